#include "qt/window/StatusBarWidget.h"
#include "support/Desk.h"
#include <QApplication>
#include <QLabel>
#include <QToolButton>
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

QLabel* labelThatSays(StatusBarWidget& bar, QString const& text)
{
    for (auto* const label : bar.findChildren<QLabel*>())
        if (label->text() == text)
            return label;
    return nullptr;
}

} // namespace

TEST_CASE("where there is little room a message comes before the link and the count")
{
    Desk desk;
    desk.open("/b", { "a.jpg", "b.jpg" });
    desk.model().toggle(0);
    auto const said = QStringLiteral("1 Foto in die Zwischenablage kopiert");
    desk.model().showStatus(said.toStdString());
    StatusBarWidget bar(desk.model());
    CHECK(bar.minimumWidth() == 1);
    auto* const message = labelThatSays(bar, said);
    REQUIRE(message);
    auto* const link = bar.findChild<QToolButton*>(QStringLiteral("selectNone"));
    auto* const count = labelThatSays(bar, QStringLiteral("2 Fotos · 1 ausgewählt"));
    REQUIRE(count);
    bar.show();
    auto const needed = message->fontMetrics().horizontalAdvance(said);
    auto const whole = [&](int width) {
        bar.resize(width, bar.height());
        QApplication::sendPostedEvents();
        return message->width() >= needed;
    };
    CHECK(whole(900));
    CHECK(link->isVisible());
    CHECK(count->isVisible());
    auto const rest = count->sizeHint().width() + link->sizeHint().width();
    CHECK(whole(needed + rest));
    CHECK_FALSE(link->isVisible());
    CHECK(count->isVisible());
    CHECK(whole(needed + 40));
    CHECK_FALSE(count->isVisible());
    desk.loop.advance(6s);
    bar.modelChanged();
    CHECK(link->isVisible());
    CHECK(count->isVisible());
}
