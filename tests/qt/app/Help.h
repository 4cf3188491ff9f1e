#pragma once
#include "icu/IcuTextOrder.h"
#include "qt/app/HelpTopicList.h"
#include "qt/app/HelpTopicWidget.h"
#include "qt/app/HelpWindow.h"
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <doctest/doctest.h>

namespace pixelhain {

/// The help window, open, and two hands on the keyboard.
struct Help {
    IcuTextOrder order { "de_DE" };
    HelpWindow window { order };
    HelpTopicWidget& topic = window.topic();

    Help()
    {
        window.bringForward();
        REQUIRE(QTest::qWaitForWindowActive(&window));
    }

    // As the display server sends it: to the control that has the focus, shortcuts first.
    void press(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, held);
    }

    void type(char const* text) { window.field().setText(QString::fromUtf8(text)); }

    QStringList listed() const
    {
        QStringList titles;
        auto& list = const_cast<HelpWindow&>(window).list();
        for (int row = 0; list.isVisible() && row < list.count(); ++row)
            titles += list.item(row)->text();
        return titles;
    }

    QStringList messages() const
    {
        QStringList texts;
        for (auto const* label : window.findChildren<QLabel*>())
            if (label->isVisible())
                texts += label->text();
        return texts;
    }

    std::string shown() const { return window.view().topic() ? window.view().topic()->id : "none"; }

    QString marked() const
    {
        QStringList words;
        for (auto const& [begin, end] : topic.matches()) {
            QTextCursor cursor(topic.document());
            cursor.setPosition(begin);
            cursor.setPosition(end, QTextCursor::KeepAnchor);
            words += cursor.selectedText();
        }
        return words.join(QLatin1Char('|'));
    }

    QString copied(QString const& from, QString const& to)
    {
        auto cursor = topic.document()->find(from);
        REQUIRE_FALSE(cursor.isNull());
        auto const begin = cursor.selectionStart();
        cursor = topic.document()->find(to, cursor.selectionStart());
        REQUIRE_FALSE(cursor.isNull());
        auto const end = cursor.selectionEnd();
        cursor.setPosition(begin);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        topic.setTextCursor(cursor);
        topic.copy();
        return QGuiApplication::clipboard()->text();
    }

    int scrolled() const { return topic.verticalScrollBar()->value(); }
};

} // namespace pixelhain
