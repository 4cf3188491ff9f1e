#pragma once
#include "app/HelpSearch.h"
#include "app/HelpTopic.h"
#include "qt/app/HelpDocument.h"
#include "qt/app/HelpPainter.h"
#include <QTextEdit>
#include <vector>

namespace pixelhain {

/// One topic of the manual, to be read, scrolled and copied from. The keyboard scrolls; with Shift
/// it selects.
class HelpTopicWidget final : public QTextEdit {
public:
    explicit HelpTopicWidget(QWidget* parent = nullptr);

    /// Shows a topic from its beginning; one that is shown already stays where it is.
    void showTopic(HelpTopic const& topic);

    /// Marks what was searched for. If none of it is in sight, scrolls to the first of it.
    void highlight(HelpSearch const& search);

    std::vector<HelpRange> const& matches() const { return matches_; }

    /// Scrolls by almost the height of what is shown, up or down.
    void turnPage(int direction);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    void write();
    bool scrollWith(QKeyEvent const& event);
    void beginSelectionInSight();
    void showFirstMatch();
    QPointF documentOrigin() const;

    HelpTopic const* topic_ = nullptr;
    std::vector<HelpPassage> passages_;
    std::vector<HelpRange> matches_;
    bool showsFocus_ = false; ///< reached with the keyboard
};

} // namespace pixelhain
