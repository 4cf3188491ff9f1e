#include "qt/window/Symbols.h"
#include <QPainter>
#include <QSvgRenderer>
#include <map>
#include <string>
#include <tuple>

// The drawings are linked in from a static library, which the linker would leave out.
static void addSymbolFiles()
{
    Q_INIT_RESOURCE(symbols);
}

namespace pixelhain {

namespace {

QImage drawn(std::string_view name, int edge, QColor const& color)
{
    addSymbolFiles();
    auto const file = QStringLiteral(":/symbols/%1.svg")
                          .arg(QLatin1StringView(name.data(), static_cast<qsizetype>(name.size())));
    QSvgRenderer renderer(file);
    if (!renderer.isValid())
        return {};
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

QImage symbolImage(std::string_view name, int edge, QColor const& color)
{
    // A handful of symbols in a few colours: more means that sizes keep changing, and the old ones
    // are of no use then.
    constexpr std::size_t most = 64;
    static std::map<std::tuple<std::string, int, QRgb>, QImage> known;
    if (edge <= 0)
        return {};
    auto const key = std::tuple(std::string(name), edge, color.rgba());
    if (auto const found = known.find(key); found != known.end())
        return found->second;
    if (known.size() >= most)
        known.clear();
    return known.emplace(key, drawn(name, edge, color)).first->second;
}

} // namespace pixelhain
