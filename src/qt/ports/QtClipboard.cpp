#include "qt/ports/QtClipboard.h"
#include "qt/ports/FileMimeData.h"
#include <QClipboard>
#include <QGuiApplication>

namespace pixelhain {

void QtClipboard::setFiles(std::span<FileUrl const> files)
{
    QGuiApplication::clipboard()->setMimeData(new FileMimeData(files)); // takes it
}

} // namespace pixelhain
