#pragma once
#include "base/FileUrl.h"
#include <QMimeData>
#include <span>
#include <vector>

namespace pixelhain {

/// Files as the clipboard and a drag offer them: one offer in every form that file managers and
/// other programs read, always to be copied, never to be moved. A form is made when it is asked
/// for.
class FileMimeData final : public QMimeData {
public:
    explicit FileMimeData(std::span<FileUrl const> files);

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(QString const& format) const override;

protected:
    QVariant retrieveData(QString const& format, QMetaType type) const override;

private:
    [[nodiscard]] QByteArray uris(char const* before, char const* between) const;

    std::vector<FileUrl> files_;
};

} // namespace pixelhain
