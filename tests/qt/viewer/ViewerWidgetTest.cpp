#include "qt/Contrast.h"
#include "qt/viewer/ChromeButton.h"
#include "qt/viewer/ElidedLabel.h"
#include "qt/viewer/InfoPanelWidget.h"
#include "qt/viewer/ViewerDesk.h"
#include "qt/viewer/ViewerLabels.h"
#include "qt/window/Gallery.h"
#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QToolTip>
#include <QWheelEvent>
#include <doctest/doctest.h>

using namespace pixelhain;
using Action = ViewerChrome::Action;
using Kind = FakeViewerSource::Kind;
using Side = ViewerChrome::Side;

namespace {

void turnWheel(QWidget& widget, int angle, Qt::KeyboardModifiers held = {},
    Qt::ScrollPhase phase = Qt::NoScrollPhase)
{
    QPointF const at(100, 100);
    QWheelEvent event(
        at, widget.mapToGlobal(at), {}, { 0, angle }, Qt::NoButton, held, phase, false);
    QApplication::sendEvent(&widget, &event);
}

void gesture(QWidget& widget, Qt::NativeGestureType type, double value)
{
    QPointF const at(100, 100);
    QNativeGestureEvent event(
        type, QPointingDevice::primaryPointingDevice(), 2, at, at, at, value, {});
    QApplication::sendEvent(&widget, &event);
}

QStringList shownTexts(QWidget const& widget)
{
    QStringList texts;
    for (auto const* label : widget.findChildren<QLabel*>())
        if (label->isVisible() && !label->text().isEmpty())
            texts += label->text();
    return texts;
}

QRgb middleOf(QImage const& image)
{
    return image.pixel(image.rect().center());
}

// A slideshow that begins on red and has just gone on to the next photo.
void leaveRed(ViewerDesk& v)
{
    v.open(0, plainPicture(90, 50, Qt::red));
    v.desk.model().startSlideshow();
    v.desk.settle();
    v.frame();
    v.desk.loop.advance(std::chrono::milliseconds(4000));
}

/// All that the system sends: the test library's double click is the second press alone.
void doubleClick(QWidget& widget, QPoint position)
{
    QTest::mouseClick(&widget, Qt::LeftButton, {}, position);
    QTest::mouseDClick(&widget, Qt::LeftButton, {}, position);
}

} // namespace

TEST_CASE("the viewer shows itself with the photo and goes when it is closed")
{
    ViewerDesk v;
    CHECK_FALSE(v.widget.isVisible());
    v.open(0, plainPicture(90, 50, Qt::red));
    CHECK(v.widget.isVisible());
    CHECK(middleOf(v.wholeFrame()) == QColor(Qt::red).rgb());
    bool isGiven = false;
    v.widget.closing = [&] { isGiven = true; };
    v.desk.model().closeViewer();
    v.desk.settle();
    CHECK(isGiven);
    CHECK(eventually([&] { return !v.widget.isVisible(); }));
}

TEST_CASE("the viewer fades: what is beneath shines through at first")
{
    ViewerDesk v;
    v.window.setPalette(QPalette(Qt::white));
    v.source.pictures[v.url(0)] = plainPicture(90, 50, Qt::black);
    v.desk.model().openViewer(0);
    v.desk.settle();
    REQUIRE(v.widget.graphicsEffect());
    auto const first = qRed(middleOf(v.window.grab().toImage()));
    CHECK(first > 100);
    CHECK(eventually([&] { return !v.widget.graphicsEffect(); }));
    CHECK(qRed(middleOf(v.window.grab().toImage())) == 0);
}

TEST_CASE("around the photo it is black")
{
    ViewerDesk v;
    v.open(0, plainPicture(10, 50, Qt::red));
    auto const frame = v.frame();
    CHECK(frame.pixel(0, frame.height() / 2) == QColor(Qt::black).rgb());
    CHECK(frame.pixel(frame.width() - 1, 0) == QColor(Qt::black).rgb());
    CHECK(middleOf(frame) == QColor(Qt::red).rgb());
}

TEST_CASE("a photo with holes lies on black")
{
    ViewerDesk v;
    auto bitmap = Bitmap::allocate({ 4, 4 }, false);
    std::fill_n(bitmap.row(0), bitmap.cost(), std::uint8_t { 0 });
    v.open(0, std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full }));
    v.rest();
    CHECK(middleOf(v.frame()) == QColor(Qt::black).rgb());
}

TEST_CASE("the bar has its buttons in their order, with tips and names")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    QStringList tips;
    QStringList names;
    int right = -1;
    for (auto const action : ViewerChrome::order) {
        auto const* const button = v.widget.chrome().button(action);
        REQUIRE(button);
        CHECK(button->x() > right);
        right = button->x();
        tips += button->toolTip();
        names += button->accessibleName();
    }
    CHECK(tips
        == QStringList { QStringLiteral("Zurück zur Übersicht (Esc / Leertaste)"),
            QStringLiteral("Auswählen und weiter zum nächsten Foto (X)"),
            QStringLiteral("Infos (I)"), QStringLiteral("Diashow ab hier (D)"),
            QStringLiteral("In den Papierkorb (⌘⌫)"), QStringLiteral("Teilen"),
            QStringLiteral("Vollbild (F)") });
    CHECK_FALSE(names.contains(QString()));
    CHECK(shownTexts(v.widget.chrome()) == QStringList { QStringLiteral("1 / 3") });
    CHECK(partOf<ElidedLabel>(v.widget.chrome())->text() == QStringLiteral("IMG_1.jpg"));
}

TEST_CASE("the buttons of the bar do what they say")
{
    ViewerDesk v;
    auto& model = v.desk.model();
    v.open(0, plainPicture(90, 50, Qt::red));
    auto const click = [&](Action action) {
        QTest::mouseClick(v.widget.chrome().button(action), Qt::LeftButton);
        v.desk.settle();
    };
    click(Action::info);
    CHECK(model.showInfo);
    click(Action::fullScreen);
    CHECK(v.desk.window.fullScreen);
    click(Action::select);
    CHECK(v.desk.marked() == Names { "IMG_1.jpg" });
    CHECK(*model.viewerIndex == 1U);
    click(Action::trash);
    CHECK(v.desk.names() == Names { "IMG_1.jpg", "IMG_3.jpg" });
    click(Action::share);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    REQUIRE(menu);
    CHECK(menu->actions().last()->text().remove(QLatin1Char('&'))
        == QStringLiteral("Dateien kopieren"));
    CHECK(menu->palette().color(QPalette::Base).lightness() < 80);
    CHECK(contrast(menu->palette().color(QPalette::Text), menu->palette().color(QPalette::Base))
        >= 7);
    menu->close();
    click(Action::close);
    CHECK_FALSE(model.viewerIndex->has_value());
}

TEST_CASE("tips over the dark viewer are dark, and read like the name of the file")
{
    auto const shownTip = []() -> QWidget* {
        for (auto* const window : QApplication::topLevelWidgets())
            if (window->inherits("QTipLabel") && window->isVisible())
                return window;
        return nullptr;
    };
    auto const ask = [](QWidget& widget) {
        auto const at = widget.rect().center();
        QHelpEvent help(QEvent::ToolTip, at, widget.mapToGlobal(at));
        QApplication::sendEvent(&widget, &help);
    };
    ViewerDesk v;
    v.desk.open("/Lang", { "<b>" + std::string(150, 'a') + ".jpg" });
    v.open(0, plainPicture(90, 50, Qt::red));
    ask(*v.widget.chrome().button(Action::info));
    REQUIRE(shownTip());
    auto const colors = shownTip()->palette();
    CHECK(QToolTip::text() == QStringLiteral("Infos (I)"));
    CHECK(colors.color(QPalette::ToolTipBase).lightness() < 80);
    CHECK(contrast(colors.color(QPalette::ToolTipText), colors.color(QPalette::ToolTipBase)) >= 7);
    ask(*partOf<ElidedLabel>(v.widget.chrome()));
    CHECK(QToolTip::text().contains(QStringLiteral("&lt;b&gt;")));
    QToolTip::hideText();
}

TEST_CASE("a long name is cut in its middle and told by its tip")
{
    ViewerDesk v;
    v.desk.open("/Lang", { std::string(150, 'a') + "_ende.jpg" });
    v.open(0, plainPicture(90, 50, Qt::red));
    auto const* const name = partOf<ElidedLabel>(v.widget.chrome());
    CHECK(name->shownText().contains(QChar(0x2026)));
    CHECK(name->shownText().startsWith(QStringLiteral("aaa")));
    CHECK(name->shownText().endsWith(QStringLiteral("_ende.jpg")));
    CHECK(name->toolTip() == name->text());
    CHECK(v.widget.chrome().button(Action::fullScreen)->geometry().right() < ViewerDesk::width);
    int next = ViewerDesk::width;
    for (auto const action : ViewerChrome::order) {
        auto const left = v.widget.chrome().button(action)->geometry().left();
        if (left > name->geometry().right())
            next = std::min(next, left);
    }
    CHECK(next - name->geometry().right() < 30); // it takes all the room there is
}

TEST_CASE("the arrows step, and are lit under the pointer")
{
    ViewerDesk v;
    v.open(1, plainPicture(90, 50, Qt::white));
    auto& right = v.widget.arrow(Side::right);
    auto const ground = [&] {
        auto const corner = right.pos() * v.scale() + QPointF(12, 12) * v.scale();
        return qRed(v.wholeFrame().pixel(corner.toPoint()));
    };
    CHECK(ground() >= 254);
    right.hovered(true);
    CHECK(ground() == doctest::Approx(255 * 0.65).epsilon(0.03));
    right.hovered(false);
    CHECK(ground() >= 254);
    QTest::mouseClick(&right, Qt::LeftButton);
    v.desk.settle();
    CHECK(*v.desk.model().viewerIndex == 2U);
    QTest::mouseClick(&right, Qt::LeftButton);
    CHECK(v.desk.window.beepCount == 1);
    QTest::mouseClick(&v.widget.arrow(Side::left), Qt::LeftButton);
    CHECK(*v.desk.model().viewerIndex == 1U);
    CHECK(right.size() == QSize(56, 120));
    CHECK(right.geometry().right() == ViewerDesk::width - 10 - 1);
}

TEST_CASE("a photo alone has no arrows at its sides, and they give the keyboard back")
{
    ViewerDesk v;
    v.desk.open("/Zwei", { "a.jpg", "b.jpg" });
    v.open(0, plainPicture(90, 50, Qt::white));
    auto& right = v.widget.arrow(Side::right);
    CHECK(right.isVisible());
    right.setFocus();
    v.desk.model().trash({ v.desk.model().items->back().url });
    v.desk.settle();
    REQUIRE(v.desk.model().items->size() == 1);
    CHECK_FALSE(right.isVisible());
    CHECK_FALSE(v.widget.arrow(Side::left).isVisible());
    CHECK(v.widget.chrome().isVisible());
    CHECK_FALSE(right.hasFocus());
}

TEST_CASE("a photo that cannot be read says so, one that is being read turns a wheel")
{
    ViewerDesk v;
    v.open(0);
    CHECK_FALSE(partOf<LargeSpinner>(v.widget)->isVisible());
    v.desk.loop.advance(std::chrono::milliseconds(150));
    CHECK(partOf<LargeSpinner>(v.widget)->isVisible());
    CHECK_FALSE(partOf<FailureView>(v.widget)->isVisible());
    v.source.answer(Kind::display, nullptr);
    CHECK_FALSE(partOf<LargeSpinner>(v.widget)->isVisible());
    CHECK(shownTexts(*partOf<FailureView>(v.widget))
        == QStringList { QStringLiteral("Bild kann nicht gelesen werden") });
    v.desk.model().stepViewer(+1);
    v.desk.settle();
    CHECK_FALSE(partOf<FailureView>(v.widget)->isVisible());
}

TEST_CASE("the info panel shows its lines at the bottom left")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::white));
    auto* const panel = partOf<InfoPanelWidget>(v.widget);
    CHECK_FALSE(panel->isVisible());
    v.desk.model().toggleInfo();
    v.desk.loop.settle();
    CHECK(panel->isVisible());
    auto const empty = panel->size();
    CHECK(empty == QSize(24, 24));
    v.desk.settle();
    CHECK(panel->width() > empty.width());
    CHECK(panel->accessibleName() == QStringLiteral("IMG_1.jpg\n6000 × 4000 px (24.0 MP)"));
    CHECK(panel->x() == 16);
    CHECK(panel->geometry().bottom() == ViewerDesk::height - 16 - 1);
    v.desk.model().toggleInfo();
    v.desk.settle();
    CHECK_FALSE(panel->isVisible());
}

TEST_CASE("a notch of the wheel is one photo, and none is passed unseen")
{
    ViewerDesk v(9);
    for (std::size_t i = 0; i < 9; ++i)
        if (i != 2)
            v.source.pictures[v.url(i)] = plainPicture(90, 50, Qt::red);
    v.open(0);
    v.frame();
    auto const index = [&] {
        v.desk.settle();
        return **v.desk.model().viewerIndex;
    };
    turnWheel(v.widget.picture(), -120);
    CHECK(index() == 1);
    turnWheel(v.widget.picture(), -120); // before a frame
    CHECK(index() == 1);
    v.frame();
    turnWheel(v.widget.picture(), -120);
    CHECK(index() == 2);
    v.frame(); // of a photo that is being read
    turnWheel(v.widget.picture(), -120);
    CHECK(index() == 2);
    v.source.answer(Kind::display, plainPicture(90, 50, Qt::red));
    v.frame();
    turnWheel(v.widget, 120); // as the toolkit hands it on from an arrow
    CHECK(index() == 1);
    v.frame();
    turnWheel(v.widget.picture(), -120, {}, Qt::ScrollMomentum);
    CHECK(index() == 1);
}

TEST_CASE("the wheel with Ctrl zooms and keeps the photo")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    turnWheel(v.widget.picture(), 120, Qt::ControlModifier);
    CHECK(v.image().scale() == doctest::Approx(1.25));
    turnWheel(v.widget.picture(), 60, Qt::ControlModifier);
    CHECK(v.image().scale() == doctest::Approx(std::pow(1.25, 1.5)));
    CHECK(*v.desk.model().viewerIndex == 0U);
}

TEST_CASE("two fingers on a touchpad zoom, over the bar too")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    for (auto* const under :
        std::initializer_list<QWidget*> { &v.widget.picture(), &v.widget.chrome() }) {
        gesture(*under, Qt::BeginNativeGesture, 0);
        gesture(*under, Qt::ZoomNativeGesture, 0.5);
        gesture(*under, Qt::ZoomNativeGesture, 0.5);
        CHECK(v.image().scale() == doctest::Approx(2));
        gesture(*under, Qt::ZoomNativeGesture, -1.2);
        CHECK(v.image().scale() == 1);
        gesture(*under, Qt::EndNativeGesture, 0);
    }
}

TEST_CASE("two fingers that stay on the touchpad begin anew with the next photo")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    gesture(v.widget.picture(), Qt::BeginNativeGesture, 0);
    gesture(v.widget.picture(), Qt::ZoomNativeGesture, 2);
    CHECK(v.image().scale() == doctest::Approx(3));
    v.desk.model().stepViewer(+1);
    v.desk.settle();
    gesture(v.widget.picture(), Qt::ZoomNativeGesture, 0.5);
    CHECK(v.image().scale() == doctest::Approx(1.5));
}

TEST_CASE("the second click of two in the gallery does not zoom the photo that the first opened")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    QTest::mouseDClick(&v.widget.picture(), Qt::LeftButton, {}, { 450, 250 });
    CHECK(v.image().scale() == 1);
    QTest::mouseClick(&v.widget.picture(), Qt::LeftButton, {}, { 450, 250 });
    v.widget.hide();
    v.widget.show();
    QTest::mouseDClick(&v.widget.picture(), Qt::LeftButton, {}, { 450, 250 });
    CHECK(v.image().scale() == 1);
    doubleClick(v.widget.picture(), { 450, 250 });
    CHECK(v.image().scale() == 2.5);
}

TEST_CASE("a double click zooms, and a drag moves what is zoomed")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    auto& picture = v.widget.picture();
    doubleClick(picture, { 450, 250 });
    CHECK(v.image().scale() == 2.5);
    QTest::mousePress(&picture, Qt::LeftButton, {}, { 300, 300 });
    QTest::mouseMove(&picture, { 307, 300 });
    CHECK(v.image().zoom().offset == Point {});
    QTest::mouseMove(&picture, { 330, 280 });
    CHECK(v.image().zoom().offset == Point { 30, -20 });
    CHECK(picture.cursor().shape() == Qt::ClosedHandCursor);
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, { 330, 280 });
    CHECK(picture.cursor().shape() == Qt::OpenHandCursor);
    doubleClick(picture, { 450, 250 });
    CHECK(v.image().zoom() == Zoom {});
    CHECK(picture.cursor().shape() == Qt::ArrowCursor);
}

TEST_CASE("a zoom by double click is on its way after half its time and there after all of it")
{
    ViewerDesk v;
    auto const picture = plainPicture(90, 50, Qt::red);
    v.open(0, plainPicture(10, 50, Qt::red));
    v.image().doubleClick();
    auto const width = [&] {
        auto const frame = v.frame();
        int count = 0;
        for (int x = 0; x < frame.width(); ++x)
            count += qRed(frame.pixel(x, frame.height() / 2)) > 128 ? 1 : 0;
        return count / v.scale();
    };
    CHECK(width() == doctest::Approx(100).epsilon(0.02));
    v.time += Milliseconds(100);
    CHECK(width() == doctest::Approx(100 * (1 + 1.5 * 0.75)).epsilon(0.02));
    v.time += Milliseconds(100);
    CHECK(width() == doctest::Approx(250).epsilon(0.02));
}

TEST_CASE("photos of a slideshow blend evenly into each other")
{
    ViewerDesk v;
    v.source.pictures[v.url(1)] = plainPicture(90, 50, Qt::blue);
    leaveRed(v);
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.time += Milliseconds(350);
    auto const half = middleOf(v.frame());
    CHECK(std::abs(qRed(half) - 127) <= 2);
    CHECK(std::abs(qBlue(half) - 127) <= 2);
    v.time += Milliseconds(350);
    CHECK(middleOf(v.frame()) == QColor(Qt::blue).rgb());
    // A step by hand does not blend.
    v.desk.model().stepViewer(-1);
    v.desk.loop.settle();
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
}

TEST_CASE("a photo that is not there yet is waited for before it is blended to, not for ever")
{
    ViewerDesk v;
    leaveRed(v);
    v.frame();
    v.time += Milliseconds(600);
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.source.answer(Kind::display, plainPicture(90, 50, Qt::blue));
    v.frame();
    v.time += Milliseconds(350);
    CHECK(std::abs(qRed(middleOf(v.frame())) - 127) <= 2);
    v.time += Milliseconds(350);
    CHECK(middleOf(v.frame()) == QColor(Qt::blue).rgb());
    v.desk.loop.advance(std::chrono::milliseconds(4000));
    v.frame();
    v.time += Milliseconds(1500);
    CHECK(middleOf(v.frame()) == QColor(Qt::black).rgb());
}

TEST_CASE("an animation plays in the viewer, frame by frame, zoomed and moved like a photo")
{
    ViewerDesk v;
    v.putAnimation(0, 60);
    v.open(0);
    auto const grey = [&] { return qRed(middleOf(v.frame())); };
    CHECK(grey() == 0);
    for (int number = 1; number <= 5; ++number) {
        v.desk.loop.advance(std::chrono::milliseconds(100));
        v.desk.settle();
        CHECK(grey() == number);
    }
    v.image().doubleClick();
    v.rest();
    CHECK(v.image().scale() == ViewerImage::doubleClickScale);
    CHECK(v.source.asked(Kind::full) == 0);
    CHECK(grey() > 5);
    CHECK(v.played.alive == 1);
    v.desk.model().closeViewer();
    v.desk.settle();
    CHECK(v.played.alive == 0);
}

TEST_CASE("a photo that turns out to move stays on the screen until its first frame is there")
{
    ViewerDesk v;
    v.putAnimation(0, 60, 1);
    v.source.metas.clear();
    v.source.pictures[v.url(0)] = plainPicture(90, 50, Qt::red);
    v.open(0);
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.source.answerMeta(ImageMeta { PixelSize { 90, 50 }, true });
    v.desk.settle();
    REQUIRE(v.image().isAnimated());
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.desk.loop.advance(AnimatedImageView::retryTime);
    v.desk.settle();
    v.desk.loop.advance(std::chrono::milliseconds(100));
    v.desk.settle();
    CHECK(middleOf(v.frame()) == QColor(1, 1, 1).rgb());
}

TEST_CASE("an animation stands as the gallery shows it until its first frame is there")
{
    ViewerDesk v;
    v.putAnimation(0, 60, 1);
    v.source.thumbnails[v.url(0)] = plainPicture(45, 25, Qt::red);
    v.open(0);
    REQUIRE(v.image().isAnimated());
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.desk.loop.advance(AnimatedImageView::retryTime);
    v.desk.settle();
    CHECK(middleOf(v.frame()) == QColor(0, 0, 0).rgb());
    v.desk.loop.advance(std::chrono::milliseconds(100));
    v.desk.settle();
    CHECK(middleOf(v.frame()) == QColor(1, 1, 1).rgb());
}

TEST_CASE("a slideshow blends to an animation's first frame, not to black")
{
    ViewerDesk v;
    v.putAnimation(1, 1, 1);
    leaveRed(v);
    v.desk.settle();
    v.frame();
    v.time += Milliseconds(350);
    CHECK(middleOf(v.frame()) == QColor(Qt::red).rgb());
    v.desk.loop.advance(AnimatedImageView::retryTime);
    v.desk.settle();
    REQUIRE(v.played.decoded == 1);
    v.frame();
    v.time += Milliseconds(350);
    CHECK(std::abs(qRed(middleOf(v.frame())) - 127) <= 2);
    v.time += Milliseconds(350);
    CHECK(middleOf(v.frame()) == QColor(Qt::black).rgb()); // which is what that frame holds
}

TEST_CASE("a blend in a window that nobody sees comes to its end")
{
    ViewerDesk v;
    v.source.pictures[v.url(1)] = plainPicture(90, 50, Qt::blue);
    auto& picture = v.widget.picture();
    auto const isTicking = [&] {
        return !QAbstractEventDispatcher::instance()->registeredTimers(&picture).isEmpty();
    };
    auto const tick = [&] {
        QTimerEvent event(0);
        QApplication::sendEvent(&picture, &event);
    };
    leaveRed(v);
    REQUIRE(isTicking());
    SUBCASE("because it is hidden")
    {
        v.window.hide();
        CHECK_FALSE(isTicking());
    }
    SUBCASE("by time, though nothing is painted")
    {
        tick();
        CHECK(isTicking());
        v.time += Milliseconds(2000);
        tick();
        CHECK_FALSE(isTicking());
    }
}

TEST_CASE("a slideshow shows the photo alone, and paused it says how to go on")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    auto& model = v.desk.model();
    model.startSlideshow();
    v.desk.settle();
    auto const* const label = partOf<PauseLabel>(v.widget);
    CHECK_FALSE(v.widget.chrome().isVisible());
    CHECK_FALSE(v.widget.arrow(Side::left).isVisible());
    CHECK_FALSE(label->isVisible());
    model.toggleSlideshowPause();
    v.desk.settle();
    CHECK(label->isVisible());
    CHECK(shownTexts(*label)
        == QStringList { QStringLiteral("Pausiert – Leertaste setzt fort, Esc beendet") });
    CHECK(label->geometry().bottom() == ViewerDesk::height - 30 - 1);
    CHECK(std::abs(label->geometry().center().x() - ViewerDesk::width / 2) <= 1);
    CHECK_FALSE(v.widget.chrome().isVisible());
    model.stopSlideshow();
    v.desk.settle();
    CHECK(v.widget.chrome().isVisible());
    CHECK_FALSE(label->isVisible());
}

TEST_CASE("keys with Ctrl zoom")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    auto const type
        = [&](Qt::Key key) { QTest::keyClick(&v.widget.picture(), key, Qt::ControlModifier); };
    type(Qt::Key_Plus);
    type(Qt::Key_Plus);
    CHECK(v.image().scale() == doctest::Approx(1.5625));
    type(Qt::Key_Minus);
    CHECK(v.image().scale() == doctest::Approx(1.25));
    type(Qt::Key_0);
    CHECK(v.image().scale() == 1);
    type(Qt::Key_1); // smaller than the window: not below the fitted size
    CHECK(v.image().scale() == 1);
    QTest::keyClick(&v.widget.picture(), Qt::Key_Plus);
    CHECK(v.image().scale() == 1);
}

TEST_CASE("Tab goes round all there is in the viewer and nowhere else")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::red));
    v.window.activateWindow();
    REQUIRE(QTest::qWaitForWindowActive(&v.window));
    v.widget.picture().setFocus();
    std::vector<QWidget*> passed;
    for (std::size_t i = 0; i < ViewerChrome::order.size() + 3; ++i) {
        passed.push_back(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    CHECK(passed[1] == v.widget.chrome().button(Action::close));
    CHECK(passed.back() == &v.widget.arrow(Side::right));
    CHECK(QApplication::focusWidget() == &v.widget.picture());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    CHECK(QApplication::focusWidget() == &v.widget.arrow(Side::right));
}

TEST_CASE("the viewer is dark on a light desktop, with the desktop's accent")
{
    QPalette light(Qt::white);
    light.setColor(QPalette::Highlight, QColor(200, 30, 90));
    QApplication::setPalette(light);
    {
        ViewerDesk v;
        v.open(0, plainPicture(90, 50, Qt::red));
        for (auto const* part : v.widget.findChildren<QWidget*>()) {
            if (part->isWindow())
                continue;
            CHECK(part->palette().color(QPalette::Window).lightness() < 60);
            CHECK(part->palette().color(QPalette::Highlight) == QColor(200, 30, 90));
        }
        light.setColor(QPalette::Highlight, QColor(20, 130, 90));
        QApplication::setPalette(light);
        QApplication::processEvents();
        CHECK(v.widget.palette().color(QPalette::Highlight) == QColor(20, 130, 90));
    }
    QApplication::setPalette(QPalette());
}

TEST_CASE("holding the key passes photos by and ends on the right one")
{
    ViewerDesk v(200);
    v.open(0);
    for (int i = 0; i < 150; ++i) {
        v.desk.model().stepViewer(+1);
        v.desk.loop.settle();
        v.frame();
    }
    CHECK(v.source.wanted(Kind::display) == std::vector<std::string> { "IMG_151.jpg" });
    v.source.answer(Kind::display, speckledPicture(1200, 700));
    v.rest();
    CHECK(v.widget.isComplete());
    CHECK(partOf<ElidedLabel>(v.widget.chrome())->text() == QStringLiteral("IMG_151.jpg"));
}

TEST_CASE("who cannot see the photo is told which one it is")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::white));
    auto* const picture = QAccessible::queryAccessibleInterface(&v.widget.picture());
    CHECK(picture->role() == QAccessible::Graphic);
    CHECK(picture->text(QAccessible::Name) == QStringLiteral("IMG_1.jpg, 1 von 3"));
    v.desk.model().stepViewer(+1);
    v.desk.settle();
    CHECK(picture->text(QAccessible::Name) == QStringLiteral("IMG_2.jpg, 2 von 3"));
    v.desk.model().toggle(1);
    v.desk.settle();
    CHECK(picture->text(QAccessible::Name) == QStringLiteral("IMG_2.jpg, 2 von 3, ausgewählt"));
}

TEST_CASE("what the info panel says is said about the picture while it shows")
{
    ViewerDesk v;
    v.open(0, plainPicture(90, 50, Qt::white));
    v.desk.model().toggleInfo();
    v.desk.settle();
    auto* const panel = QAccessible::queryAccessibleInterface(partOf<InfoPanelWidget>(v.widget));
    auto* const picture = QAccessible::queryAccessibleInterface(&v.widget.picture());
    CHECK(panel->role() == QAccessible::StaticText);
    auto const lines = panel->text(QAccessible::Name);
    CHECK(lines == QStringLiteral("IMG_1.jpg\n6000 × 4000 px (24.0 MP)"));
    CHECK(picture->text(QAccessible::Description) == lines);
    v.desk.model().toggleInfo();
    v.desk.settle();
    CHECK(picture->text(QAccessible::Description).isEmpty());
}
