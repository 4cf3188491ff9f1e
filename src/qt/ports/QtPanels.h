#pragma once
#include "ports/Panels.h"
#include <QPointer>
#include <QWidget>

class QFileDialog;

namespace pixelhain {

/// The desktop's own dialogs where it has some, as sheets of the main window. They never block.
class QtPanels final : public Panels {
public:
    /// The window that later panels belong to.
    void setParent(QWidget* parent) { parent_ = parent; }

    void chooseFolder(
        FolderPanelRequest const& request, std::function<void(FileUrl)> chosen) override;
    void chooseSaveFile(
        SavePanelRequest const& request, std::function<void(FileUrl)> chosen) override;

private:
    QFileDialog* makeDialog(std::optional<FileUrl> const& start);
    void confirmReplacing(QString const& path, std::function<void(FileUrl)> const& chosen);

    QPointer<QWidget> parent_;
    QPointer<QFileDialog> open_;
};

} // namespace pixelhain
