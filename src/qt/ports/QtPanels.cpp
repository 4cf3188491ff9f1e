#include "qt/ports/QtPanels.h"
#include "qt/ports/FileUrlText.h"
#include <QFile>
#include <QFileDialog>

namespace pixelhain {

void QtPanels::chooseFolder(FolderPanelRequest const& request, std::function<void(FileUrl)> chosen)
{
    if (open_) {
        open_->raise();
        open_->activateWindow();
        return;
    }
    auto* dialog = new QFileDialog(parent_);
    open_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setWindowTitle(shownText(request.message));
    dialog->setLabelText(QFileDialog::Accept, shownText(request.button));
    dialog->setOption(QFileDialog::ReadOnly, !request.mayCreateFolders);
    if (request.start)
        dialog->setDirectory(QFile::decodeName(QByteArray(request.start->cString())));
    QObject::connect(dialog, &QFileDialog::accepted, dialog, [dialog, chosen = std::move(chosen)] {
        auto const files = dialog->selectedFiles();
        if (!files.isEmpty())
            chosen(fileUrlFromDialog(files.first()));
    });
    dialog->open();
}

} // namespace pixelhain
