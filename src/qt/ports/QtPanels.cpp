#include "qt/ports/QtPanels.h"
#include "model/Messages.h"
#include "qt/ports/FileUrlText.h"
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace pixelhain {

// Null if one is open already, which then comes to the front.
QFileDialog* QtPanels::makeDialog(std::optional<FileUrl> const& start)
{
    if (open_) {
        open_->raise();
        open_->activateWindow();
        return nullptr;
    }
    auto* dialog = new QFileDialog(parent_);
    open_ = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    if (start)
        dialog->setDirectory(QFile::decodeName(QByteArray(start->cString())));
    return dialog;
}

void QtPanels::chooseFolder(FolderPanelRequest const& request, std::function<void(FileUrl)> chosen)
{
    auto* const dialog = makeDialog(request.start);
    if (!dialog)
        return;
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setWindowTitle(shownText(request.message));
    dialog->setLabelText(QFileDialog::Accept, shownText(request.button));
    dialog->setOption(QFileDialog::ReadOnly, !request.mayCreateFolders);
    QObject::connect(dialog, &QFileDialog::accepted, dialog, [dialog, chosen = std::move(chosen)] {
        auto const files = dialog->selectedFiles();
        if (!files.isEmpty())
            chosen(fileUrlFromDialog(files.first()));
    });
    dialog->open();
}

// The dialog adds the ending only to names that have none at all: "Sommer 1.5" would keep its own,
// and nobody would have been asked about "Sommer 1.5.pdf".
void QtPanels::chooseSaveFile(SavePanelRequest const& request, std::function<void(FileUrl)> chosen)
{
    auto* const dialog = makeDialog(request.start);
    if (!dialog)
        return;
    auto const extension = shownText(request.extension);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(shownText(request.typeName) + QStringLiteral(" (*.") + extension + u')');
    dialog->setDefaultSuffix(extension);
    dialog->selectFile(shownText(request.name));
    QObject::connect(dialog, &QFileDialog::accepted, dialog,
        [this, dialog, ending = u'.' + extension, chosen = std::move(chosen)] {
            auto const files = dialog->selectedFiles();
            if (files.isEmpty())
                return;
            auto const& path = files.first();
            if (path.endsWith(ending, Qt::CaseInsensitive))
                chosen(fileUrlFromDialog(path));
            else if (QFileInfo::exists(path + ending))
                confirmReplacing(path + ending, chosen);
            else
                chosen(fileUrlFromDialog(path + ending));
        });
    dialog->open();
}

void QtPanels::confirmReplacing(QString const& path, std::function<void(FileUrl)> const& chosen)
{
    auto* const question = new QMessageBox(QMessageBox::Warning, QString(),
        shownText(messages::replaceQuestion(QFileInfo(path).fileName().toStdString())),
        QMessageBox::Cancel, parent_);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setTextFormat(Qt::PlainText);
    auto const* const replace
        = question->addButton(shownText(messages::replaceButton), QMessageBox::AcceptRole);
    question->setDefaultButton(QMessageBox::Cancel);
    QObject::connect(replace, &QPushButton::clicked, question,
        [path, chosen] { chosen(fileUrlFromDialog(path)); });
    question->open();
}

} // namespace pixelhain
