#include "Help.h"
#include "app/HelpTopics.h"
#include "qt/app/DesktopColors.h"
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QScreen>
#include <QSplitter>
#include <cmath>

using namespace pixelhain;

namespace {

QTextBlock paragraph(QTextDocument const& document, QString const& text)
{
    auto const found = document.find(text);
    REQUIRE_FALSE(found.isNull());
    return found.block();
}

} // namespace

TEST_CASE("help opens at the first topic, with all topics in the list")
{
    Help help;
    CHECK(help.window.windowTitle() == QStringLiteral("Pixelhain-Hilfe"));
    CHECK(help.window.size()
        == QSize(860, 620)
               .boundedTo(help.window.screen()->availableSize())
               .expandedTo(help.window.minimumSize()));
    CHECK(help.window.isWindow());
    CHECK(help.window.field().placeholderText() == QStringLiteral("Hilfe durchsuchen"));
    CHECK(help.listed().size() == 10);
    CHECK(help.window.list().currentItem()->text() == QStringLiteral("Erste Schritte"));
    CHECK(help.topic.document()->firstBlock().text() == QStringLiteral("Erste Schritte"));
    CHECK(help.messages().isEmpty());
}

TEST_CASE("every topic shows its strings, without their marks and in their order")
{
    Help help;
    for (auto const& topic : helpTopics()) {
        CAPTURE(topic.id);
        help.window.list().setCurrentRow(static_cast<int>(&topic - helpTopics().data()));
        auto const text = help.topic.toPlainText();
        CHECK_FALSE(text.contains(QStringLiteral("**")));
        CHECK_FALSE(text.contains(QChar::ObjectReplacementCharacter));
        auto searched = QString::fromStdString(searchText(topic)).remove(QLatin1Char('*'));
        auto const normal = [](QString shown) {
            for (auto const* leader : { "1\t", "2\t", "3\t", "4\t", "5\t", "•\t" })
                shown.remove(QString::fromUtf8(leader));
            return shown.simplified();
        };
        CHECK(normal(text) == searched.simplified());
    }
}

TEST_CASE("the keys of a row, its tab and its action are one paragraph")
{
    Help help;
    help.window.list().setCurrentRow(8);
    auto const row = paragraph(*help.topic.document(), QStringLiteral("Bereich"));
    CHECK(row.text() == QStringLiteral("⌘-Klick / ⇧-Klick\tEinzeln / Bereich"));
    CHECK(helpParagraph(row) == HelpParagraph::keys);
    CHECK(leaderLength(row) == 17);
}

TEST_CASE("bold and italic phrases look so")
{
    Help help;
    help.window.list().setCurrentRow(1);
    auto const at = [&](char const* phrase) {
        auto const found = help.topic.document()->find(QString::fromUtf8(phrase));
        REQUIRE_FALSE(found.isNull());
        return found.charFormat().font();
    };
    CHECK(at("Mehrere Ordner auf einmal:").bold());
    CHECK(at("Zur Auswahl hinzufügen").italic());
    CHECK_FALSE(at("Rechtsklick bietet außerdem").bold());
    CHECK_FALSE(at("Rechtsklick bietet außerdem").italic());
}

TEST_CASE("actions and second lines stand below each other, whatever the width")
{
    Help help;
    help.window.list().setCurrentRow(8);
    for (int const width : { 480, 860, 1600 }) {
        help.window.resize(width, 700);
        QCoreApplication::processEvents();
        double left = 0;
        int rows = 0;
        for (auto block = help.topic.document()->begin(); block.isValid(); block = block.next()) {
            if (helpParagraph(block) != HelpParagraph::keys)
                continue;
            auto const from = leaderLength(block) + 1;
            auto const lines = HelpPainter::rectangles(block, from, block.length() - 1);
            REQUIRE_FALSE(lines.empty());
            auto const cap = HelpPainter::rectangles(block, 0, leaderLength(block));
            REQUIRE(cap.size() == 1);
            CHECK(cap.front().right() + 2 * helpMeasures::capPaddingX < lines.front().left());
            for (auto const& line : lines) {
                if (rows++ == 0)
                    left = line.left();
                CHECK(line.left() == doctest::Approx(left).epsilon(0.002));
                CHECK(line.right() < help.topic.document()->textWidth());
            }
        }
        CHECK(rows >= 34);
        CHECK(help.topic.horizontalScrollBar()->maximum() == 0);
        CHECK(help.topic.document()->textWidth() <= 696);
    }
}

TEST_CASE("each topic in the list has the lines that its title needs, while the column is resized")
{
    Help help;
    auto& list = help.window.list();
    auto* const columns = help.window.findChild<QSplitter*>();
    auto const heights = [&] {
        int all = 0;
        for (int row = 0; row < list.count(); ++row)
            all += list.visualItemRect(list.item(row)).height();
        return all;
    };
    columns->setSizes({ 360, 500 });
    auto const wide = heights();
    auto const widest = list.width();
    for (int const width : { 240, 200, 185, 170, 300 }) {
        columns->setSizes({ width, 860 - width });
        CAPTURE(width);
        for (int row = 0; row < list.count(); ++row) {
            auto const place = list.visualItemRect(list.item(row));
            CHECK(place.height() == list.sizeHintForRow(row));
            if (row > 0)
                CHECK(place.top() > list.visualItemRect(list.item(row - 1)).bottom());
        }
        if (list.width() <= 170 && widest >= 300)
            CHECK(heights() > wide);
    }
}

TEST_CASE("the digits of steps stand in the middle of their circles")
{
    Help help;
    help.window.list().setCurrentRow(3);
    auto const left = help.topic.document()->documentMargin();
    int steps = 0;
    for (auto block = help.topic.document()->begin(); block.isValid(); block = block.next()) {
        if (helpParagraph(block) != HelpParagraph::step)
            continue;
        auto const digits = HelpPainter::rectangles(block, 0, leaderLength(block));
        REQUIRE(digits.size() == 1);
        CHECK(digits.front().center().x()
            == doctest::Approx(left + helpMeasures::circle / 2).epsilon(0.02));
        CHECK(block.text().startsWith(QString::number(++steps) + QLatin1Char('\t')));
        auto const text = HelpPainter::rectangles(block, 2, block.length() - 1);
        CHECK(text.front().left() == doctest::Approx(left + 34).epsilon(0.02));
    }
    CHECK(steps == 5);
}

TEST_CASE("a search leaves the topics that are found, and moves on if it has to")
{
    Help help;
    help.type("Diashow-Intervall");
    CHECK(help.listed() == QStringList { QStringLiteral("Fragen & Tipps") });
    CHECK(help.shown() == "faq");
    CHECK(help.window.list().currentItem()->text() == QStringLiteral("Fragen & Tipps"));
    help.type("");
    CHECK(help.listed().size() == 10);
    CHECK(help.shown() == "faq");
    CHECK(help.window.list().currentRow() == 9);
    help.type("   ");
    CHECK(help.listed().size() == 10);
}

TEST_CASE("a search without hits says so and keeps the topic")
{
    Help help;
    help.window.list().setCurrentRow(7);
    help.type("gibt es nicht");
    CHECK(help.messages() == QStringList { QStringLiteral("Keine Treffer") });
    CHECK(help.listed().isEmpty());
    CHECK(help.topic.document()->firstBlock().text() == QStringLiteral("Teilen"));
    help.type("teilen");
    CHECK(help.messages().isEmpty());
    CHECK(help.shown() == "share");
}

TEST_CASE("without a topic the window asks for one")
{
    Help help;
    help.window.list().clearSelection();
    CHECK(help.messages() == QStringList { QStringLiteral("Wähle links ein Thema.") });
    CHECK_FALSE(help.topic.isVisible());
    help.window.list().setCurrentRow(2);
    CHECK(help.messages().isEmpty());
    CHECK(help.shown() == "viewer");
}

TEST_CASE("what was searched for is marked in titles, sentences, bold phrases and key caps")
{
    Help help;
    help.type("DIASHOW");
    help.window.list().setCurrentRow(
        static_cast<int>(help.listed().indexOf(QStringLiteral("Diashow"))));
    CHECK(help.marked()
        == QStringLiteral("Diashow|Diashow|Diashow|Diashow|Diashow")); // title, 1 bold
    help.type("⌘r");
    CHECK(help.shown() == "gallery");
    CHECK(help.marked() == QStringLiteral("⌘R"));
    help.window.list().setCurrentRow(
        static_cast<int>(help.listed().indexOf(QStringLiteral("Alle Tastenkürzel"))));
    CHECK(help.marked() == QStringLiteral("⌘R|⌘R|⌘R"));
    help.type("");
    CHECK(help.marked().isEmpty());
}

TEST_CASE("matches are tinted, in light and in dark colours")
{
    auto const light = QApplication::palette();
    for (bool const dark : { false, true }) {
        if (dark)
            QApplication::setPalette(darkPalette());
        Help help;
        auto const count = [&] {
            auto const image = help.topic.viewport()->grab().toImage();
            int tinted = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    auto const color = image.pixelColor(x, y);
                    tinted += color.red() > color.blue() + 60 && color.green() > color.blue() + 40;
                }
            return tinted;
        };
        auto const before = count();
        help.type("Vorschaubildern");
        CHECK(count() > before + 500);
    }
    QApplication::setPalette(light);
}

TEST_CASE("a match out of sight is scrolled to")
{
    Help help;
    help.window.resize(860, 400);
    help.window.list().setCurrentRow(9);
    CHECK(help.scrolled() == 0);
    help.type("überwacht den Ordner");
    CHECK(help.scrolled() > 200);
    auto cursor = help.topic.textCursor();
    cursor.setPosition(help.topic.matches().front().begin);
    CHECK(help.topic.viewport()->rect().contains(help.topic.cursorRect(cursor)));
}

TEST_CASE("another topic begins at its top")
{
    Help help;
    help.window.list().setCurrentRow(1);
    help.topic.verticalScrollBar()->setValue(200);
    help.window.list().setCurrentRow(2);
    CHECK(help.scrolled() == 0);
}

TEST_CASE("the button in the search field clears it")
{
    Help help;
    QAction* clear = nullptr;
    for (auto* const action : help.window.field().actions())
        if (action->text() == QStringLiteral("Suchtext löschen"))
            clear = action;
    REQUIRE(clear);
    CHECK_FALSE(clear->isVisible());
    help.type("AirDrop");
    CHECK(clear->isVisible());
    clear->trigger();
    CHECK(help.window.field().text().isEmpty());
    CHECK(help.listed().size() == 10);
    CHECK_FALSE(clear->isVisible());
}

TEST_CASE("help that is open comes forward as it is")
{
    Help help;
    help.type("AirDrop");
    help.window.showMinimized();
    help.window.bringForward();
    CHECK_FALSE(help.window.isMinimized());
    CHECK(help.window.isVisible());
    CHECK(help.window.field().text() == QStringLiteral("AirDrop"));
    CHECK(help.shown() == "share");
}

TEST_CASE("screen readers find a named field, a named list of topics and the topic's text")
{
    Help help;
    auto const about
        = [](QWidget* widget) { return QAccessible::queryAccessibleInterface(widget); };
    CHECK(about(&help.window)->role() == QAccessible::Window);
    CHECK(about(&help.window.field())->role() == QAccessible::EditableText);
    CHECK(about(&help.window.field())->text(QAccessible::Name)
        == QStringLiteral("Hilfe durchsuchen"));
    auto* const list = about(&help.window.list());
    CHECK(list->role() == QAccessible::List);
    CHECK(list->text(QAccessible::Name) == QStringLiteral("Themen"));
    CHECK(list->childCount() == 10);
    CHECK(list->child(4)->text(QAccessible::Name) == QStringLiteral("Diashow"));
    CHECK(list->child(0)->state().selected);
    help.window.list().setCurrentRow(7);
    auto* const topic = about(&help.topic);
    CHECK(topic->text(QAccessible::Name) == QStringLiteral("Teilen"));
    CHECK(topic->state().readOnly);
    REQUIRE(topic->textInterface());
    CHECK(topic->textInterface()
              ->text(0, topic->textInterface()->characterCount())
              .contains(QStringLiteral("In der Vollansicht teilst du das angezeigte Foto.")));
}

TEST_CASE("where the column beside the keys would be too narrow, actions stand below them")
{
    Help help;
    help.window.resize(480, 600);
    auto font = help.window.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    help.topic.setFont(font);
    help.window.list().setCurrentRow(8);
    QCoreApplication::processEvents();
    auto const row = paragraph(*help.topic.document(), QStringLiteral("Mehrere Ordner"));
    auto const keys = HelpPainter::rectangles(row, 0, leaderLength(row));
    auto const action = HelpPainter::rectangles(row, leaderLength(row) + 1, row.length() - 1);
    REQUIRE(keys.size() == 1);
    CHECK(action.front().top() > keys.front().center().y());
    CHECK(action.front().left() == doctest::Approx(keys.front().left()).epsilon(0.01));
    CHECK(row.text().contains(QLatin1Char('\t')));

    help.window.resize(1600, 600);
    QCoreApplication::processEvents();
    auto const beside = HelpPainter::rectangles(row, leaderLength(row) + 1, row.length() - 1);
    CHECK(beside.front().left() > keys.front().right());
}

TEST_CASE("the list gives way where the topic would have too little room, and takes it back")
{
    Help help;
    help.window.resize(860, 600);
    CHECK(help.window.list().width() == 250);
    help.window.resize(480, 600);
    CHECK(help.window.list().width() == 170);
    CHECK(help.topic.width() >= 300);
    help.window.resize(860, 600);
    CHECK(help.window.list().width() == 250);
}

TEST_CASE("the place in a topic is kept when its lines get shorter")
{
    Help help;
    help.window.resize(1200, 400);
    help.window.list().setCurrentRow(1);
    help.topic.verticalScrollBar()->setValue(250);
    auto const top = [&] { return help.topic.cursorForPosition(QPoint(60, 1)).block(); };
    auto const before = top();
    help.window.resize(600, 400);
    QCoreApplication::processEvents();
    CHECK(help.scrolled() > 250);
    CHECK(top() == before);
}

TEST_CASE("the edges of key caps stay in sight when all is selected")
{
    Help help;
    help.window.resize(860, 600);
    help.window.list().setCurrentRow(8);
    help.window.list().setFocus();
    help.topic.selectAll();
    auto const row = paragraph(*help.topic.document(), QStringLiteral("Diese Hilfe"));
    auto const letters = HelpPainter::rectangles(row, 0, leaderLength(row)).front();
    auto const image = help.topic.viewport()->grab().toImage();
    auto const scale = image.devicePixelRatio();
    auto const y = static_cast<int>((letters.center().y() - help.scrolled()) * scale);
    auto const color = [&](double x) { return image.pixel(static_cast<int>(x * scale), y); };
    auto const selected = color(letters.right() + helpMeasures::capPaddingX + 6);
    auto const edge = letters.right() + helpMeasures::capPaddingX;
    bool differs = false;
    for (double x = edge - 2; x <= edge + 1; x += 0.5)
        differs = differs || color(x) != selected;
    CHECK(differs);
}

TEST_CASE("numbers are white on circles in the accent colour")
{
    Help help;
    help.window.resize(860, 600);
    help.window.list().setCurrentRow(6);
    auto const step = paragraph(*help.topic.document(), QStringLiteral("Wähle die gewünschten"));
    auto const digit = HelpPainter::rectangles(step, 0, 1).front();
    auto const image = help.topic.viewport()->grab().toImage();
    auto const scale = image.devicePixelRatio();
    auto const accent = help.topic.palette().color(QPalette::Highlight);
    int inked = 0;
    int white = 0;
    for (int y = 0; y < 22; ++y)
        for (int x = 0; x < 22; ++x) {
            auto const at = digit.center() + QPointF(x - 11, y - 11);
            auto const color = image.pixelColor(
                static_cast<int>(at.x() * scale), static_cast<int>(at.y() * scale));
            inked += color == accent;
            white += color.red() > 190 && std::hypot(x - 11, y - 11) < 7;
        }
    CHECK(inked > 250);
    CHECK(white > 3);
}
