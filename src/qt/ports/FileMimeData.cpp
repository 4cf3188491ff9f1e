#include "qt/ports/FileMimeData.h"
#include "base/Text.h"
#include "qt/ports/FileUrlText.h"

namespace pixelhain {

namespace {

QString const uriList = QStringLiteral("text/uri-list");
QString const gnomeFiles = QStringLiteral("x-special/gnome-copied-files");
QString const mateFiles = QStringLiteral("x-special/mate-copied-files");
QString const kdeCut = QStringLiteral("application/x-kde-cutselection");
QString const plainText = QStringLiteral("text/plain");

QByteArray bytesOf(std::string_view text)
{
    return { text.data(), static_cast<qsizetype>(text.size()) };
}

} // namespace

FileMimeData::FileMimeData(std::span<FileUrl const> files)
    : files_(files.begin(), files.end())
{
}

QStringList FileMimeData::formats() const
{
    return { uriList, gnomeFiles, mateFiles, kdeCut, plainText };
}

bool FileMimeData::hasFormat(QString const& format) const
{
    return formats().contains(format);
}

QByteArray FileMimeData::uris(char const* before, char const* between) const
{
    QByteArray all;
    for (auto const& file : files_) {
        all += before;
        all += bytesOf(uriOf(file));
        all += between;
    }
    return all;
}

QVariant FileMimeData::retrieveData(QString const& format, QMetaType) const
{
    if (format == uriList)
        return uris("", "\r\n");
    if (format == gnomeFiles || format == mateFiles) // a line break at the end would be a file
        return QByteArray("copy") + uris("\n", "");
    if (format == kdeCut)
        return QByteArray("0");
    if (format != plainText)
        return {};
    QByteArray lines;
    for (auto const& file : files_) {
        if (!lines.isEmpty())
            lines += '\n';
        lines += bytesOf(displayText(file.path()));
    }
    return lines;
}

} // namespace pixelhain
