#include "qt/window/SymbolIcon.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <string>

namespace pixelhain {

namespace {

constexpr double disabledShare = 0.4;

class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(std::string_view name, ColorRole role)
        : name_(name)
        , role_(role)
    {
    }

    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State state) override
    {
        auto const scale = painter->device()->devicePixelRatioF();
        auto const pixels = QSizeF(rect.size()) * scale;
        painter->drawPixmap(rect, pixmap(pixels.toSize(), mode, state));
    }

    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State) override
    {
        auto const edge = std::min(size.width(), size.height());
        QImage whole(size, QImage::Format_ARGB32_Premultiplied);
        whole.fill(Qt::transparent);
        if (edge > 0) {
            QPainter painter(&whole);
            painter.drawImage((size.width() - edge) / 2, (size.height() - edge) / 2,
                symbolImage(name_, edge, color(mode)));
        }
        return QPixmap::fromImage(whole);
    }

    QIconEngine* clone() const override { return new SymbolEngine(name_, role_); }
    bool isNull() override { return false; }

private:
    QColor color(QIcon::Mode mode) const
    {
        Tones const tones(QApplication::palette());
        return mode == QIcon::Disabled ? tones.of(Tint { ColorRole::primary, disabledShare })
                                       : tones.of(role_);
    }

    std::string name_;
    ColorRole role_;
};

} // namespace

QIcon symbolIcon(std::string_view name, ColorRole role)
{
    return QIcon(new SymbolEngine(name, role));
}

} // namespace pixelhain
