#include "qt/window/GalleryAccessible.h"
#include "qt/Heard.h"
#include "qt/window/Gallery.h"
#include "qt/window/PhotoAccessible.h"
#include <QMenu>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

/// A gallery that has the keyboard, as a screen reader meets it.
struct SpokenGallery : Heard, Gallery {
    explicit SpokenGallery(int count)
        : Gallery(count)
    {
        grid.show();
        grid.activateWindow();
        grid.setFocus();
        REQUIRE(eventually([this] { return grid.hasFocus(); }));
        desk.settle();
        events.clear();
    }

    BrowserModel& model() { return desk.model(); }

    GalleryAccessible& list()
    {
        auto* const found
            = dynamic_cast<GalleryAccessible*>(QAccessible::queryAccessibleInterface(&grid));
        REQUIRE(found);
        return *found;
    }

    QString name(int index) { return list().child(index)->text(QAccessible::Name); }
    QAccessible::State state(int index) { return list().child(index)->state(); }

    void perform(int index, QString const& action)
    {
        auto* const actions = list().child(index)->actionInterface();
        REQUIRE(actions);
        REQUIRE(actions->actionNames().contains(action));
        actions->doAction(action);
        desk.settle();
    }

    void move(int by)
    {
        model().moveCursor(by, Extend::no);
        desk.settle();
    }
};

} // namespace

TEST_CASE("the gallery is a list with an item for each photo")
{
    SpokenGallery gallery(3);
    auto& list = gallery.list();
    CHECK(list.role() == QAccessible::List);
    CHECK(list.text(QAccessible::Name) == QStringLiteral("Galerie"));
    CHECK(list.state().multiSelectable);
    REQUIRE(list.childCount() == 3);
    CHECK(list.child(1)->role() == QAccessible::ListItem);
    CHECK(list.child(1)->parent() == &list);
    CHECK(list.indexOfChild(list.child(2)) == 2);
    CHECK(gallery.name(0) == QStringLiteral("IMG_1.jpg"));
    CHECK(list.child(3) == nullptr);
    CHECK(list.child(-1) == nullptr);
}

TEST_CASE("a photo is named with its size once that is known, and listeners hear of it")
{
    SpokenGallery gallery(2);
    REQUIRE(gallery.name(1) == QStringLiteral("IMG_2.jpg"));
    ImageMeta meta;
    meta.size = PixelSize { 6000, 4000 };
    meta.isAnimated = true;
    auto const& requests = gallery.thumbnails.requests;
    for (std::size_t i = 0; i < requests.size(); ++i)
        if (requests[i].url.name() == "IMG_2.jpg")
            gallery.thumbnails.answerLook(i, { meta, plainPicture(160, 107, Qt::red) });
    gallery.desk.settle();
    CHECK(gallery.name(1) == QStringLiteral("IMG_2.jpg, 6000 × 4000"));
    CHECK(gallery.list().child(1)->text(QAccessible::Description) == QStringLiteral("Animiert"));
    CHECK(gallery.count(QAccessible::NameChanged) == 1);
}

TEST_CASE("a photo tells whether it is marked, in view, and where the keyboard is")
{
    SpokenGallery gallery(1000);
    gallery.move(+1);
    gallery.move(+1);
    gallery.model().toggle(0);
    gallery.desk.settle();
    CHECK(gallery.state(0).selected);
    CHECK(gallery.state(0).checked);
    CHECK_FALSE(gallery.state(0).focused);
    CHECK(gallery.state(1).focused);
    CHECK_FALSE(gallery.state(1).selected);
    CHECK(gallery.state(1).selectable);
    CHECK_FALSE(gallery.state(1).offscreen);
    CHECK(gallery.state(900).offscreen);
    CHECK(gallery.list().focusChild() == gallery.list().child(1));
}

TEST_CASE("a photo is where it is drawn")
{
    SpokenGallery gallery(50);
    auto* const item = gallery.list().child(7);
    auto const cell = gallery.grid.view().layout().cell(7);
    auto const corner = gallery.grid.viewport()->mapToGlobal(QPoint(0, 0));
    CHECK(item->rect().topLeft() == corner + QPointF(cell.x, cell.y).toPoint());
    auto const middle = item->rect().center();
    CHECK(gallery.list().childAt(middle.x(), middle.y()) == item);
    CHECK(gallery.list().childAt(corner.x() + 2, corner.y() + 2) == nullptr);
}

TEST_CASE("photos are opened, marked and come to the keyboard without a mouse or keys")
{
    SpokenGallery gallery(30);
    gallery.perform(4, QAccessibleActionInterface::setFocusAction());
    CHECK(*gallery.model().cursor == 4U);
    gallery.perform(2, QAccessibleActionInterface::setFocusAction());
    CHECK(*gallery.model().cursor == 2U);
    gallery.perform(5, QAccessibleActionInterface::toggleAction());
    CHECK(gallery.state(5).selected);
    gallery.perform(7, QAccessibleActionInterface::pressAction());
    CHECK(*gallery.model().viewerIndex == 7U);
}

TEST_CASE("the menu of a photo can be asked for")
{
    SpokenGallery gallery(300);
    gallery.perform(250, QAccessibleActionInterface::showMenuAction());
    auto* const menu = gallery.grid.findChild<QMenu*>();
    REQUIRE(menu);
    CHECK(menu->isVisible());
    CHECK_FALSE(gallery.state(250).offscreen);
    menu->close();
}

TEST_CASE("what lies beneath the viewer is not on the screen")
{
    SpokenGallery gallery(3);
    gallery.model().openViewer(0);
    gallery.desk.settle();
    CHECK(gallery.list().state().offscreen);
    CHECK(gallery.state(0).offscreen);
    CHECK(gallery.list().focusChild() == nullptr);
}

TEST_CASE("each step of the keyboard is announced once")
{
    SpokenGallery gallery(50);
    gallery.move(+1);
    gallery.move(+1);
    REQUIRE(gallery.count(QAccessible::Focus) == 2);
    CHECK(gallery.namesOf(QAccessible::Focus)
        == QStringList { QStringLiteral("IMG_1.jpg"), QStringLiteral("IMG_2.jpg") });
    gallery.model().setThumbSize(200);
    gallery.desk.settle();
    CHECK(gallery.count(QAccessible::Focus) == 2);
}

TEST_CASE("whoever comes back to the gallery hears where the keyboard is")
{
    SpokenGallery gallery(5);
    gallery.move(+1);
    gallery.grid.clearFocus();
    gallery.events.clear();
    gallery.grid.setFocus();
    gallery.desk.settle();
    REQUIRE(gallery.count(QAccessible::Focus) >= 1);
    CHECK(gallery.namesOf(QAccessible::Focus).back() == QStringLiteral("IMG_1.jpg"));
}

TEST_CASE("marking the photo at the keyboard is announced for it")
{
    SpokenGallery gallery(5);
    gallery.move(+1);
    gallery.model().toggle(0);
    gallery.desk.settle();
    CHECK(
        gallery.namesOf(QAccessible::StateChanged) == QStringList { QStringLiteral("IMG_1.jpg") });
    CHECK(gallery.count(QAccessible::SelectionWithin) == 1);
    gallery.model().toggle(0);
    gallery.desk.settle();
    CHECK(gallery.count(QAccessible::StateChanged) == 2);
}

TEST_CASE("marking a thousand photos is two pieces of news")
{
    SpokenGallery gallery(1000);
    gallery.move(+1);
    for (int index = 0; index < 200; ++index)
        gallery.name(index);
    gallery.events.clear();
    gallery.model().selectAll();
    gallery.desk.settle();
    CHECK(gallery.count(QAccessible::StateChanged) == 1);
    CHECK(gallery.count(QAccessible::SelectionWithin) == 1);
    CHECK(gallery.events.size() == 2);
}

TEST_CASE("of very many photos only few are kept for listeners, and the one at the keyboard stays")
{
    SpokenGallery gallery(100'000);
    gallery.move(+1);
    auto* const focused = gallery.list().focusChild();
    CHECK(gallery.list().keptItems() < 10);
    for (int index = 1; index < 100'000; ++index)
        CHECK(gallery.list().child(index)->parent());
    CHECK(gallery.list().keptItems() <= GalleryAccessible::mostItems);
    CHECK(gallery.list().focusChild() == focused);
    CHECK(gallery.name(99'999) == QStringLiteral("IMG_100000.jpg"));
}

TEST_CASE("a photo that moves within a list that is read again stays the same item")
{
    SpokenGallery gallery(5);
    gallery.move(+1);
    gallery.move(+1);
    auto* const focused = gallery.list().focusChild();
    auto* const other = gallery.list().child(4);
    auto const otherId = QAccessible::uniqueId(other);
    gallery.events.clear();
    gallery.desk.files.addFile(FileUrl("/Fotos/IMG_0.jpg"));
    gallery.model().reload();
    gallery.desk.settle();
    REQUIRE(gallery.list().childCount() == 6);
    CHECK(gallery.name(2) == QStringLiteral("IMG_2.jpg"));
    CHECK(gallery.list().focusChild() == focused);
    CHECK(gallery.count(QAccessible::Focus) == 0);
    CHECK(QAccessible::accessibleInterface(otherId) == nullptr);
    CHECK(gallery.name(4) == QStringLiteral("IMG_4.jpg"));
}

TEST_CASE("an item whose photo is gone says so and does nothing")
{
    SpokenGallery gallery(5);
    PhotoAccessible item(gallery.list(), 4);
    REQUIRE(item.isValid());
    gallery.desk.files.remove(FileUrl("/Fotos/IMG_5.jpg"));
    gallery.model().reload();
    gallery.desk.settle();
    REQUIRE(gallery.list().childCount() == 4);
    CHECK_FALSE(item.isValid());
    CHECK(item.state().invalid);
    CHECK(item.text(QAccessible::Name).isEmpty());
    item.doAction(QAccessibleActionInterface::pressAction());
    CHECK_FALSE(gallery.model().viewerIndex->has_value());
}
