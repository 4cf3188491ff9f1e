#pragma once
#include <QProxyStyle>

namespace pixelhain {

/// The toolkit's own style, with edges of fields and check boxes that can be seen on dark ground:
/// it makes them darker than the ground whatever that is. Entries of menus, their dividers, and
/// text that is disabled or a hint can be told from their grounds, too. Where a menu bar is too
/// long, our own symbol stands for the rest: for the one it has, each start would load all image
/// plug-ins.
class EdgeStyle final : public QProxyStyle {
public:
    EdgeStyle();

    /// Has the program drawn in this style, if it is the toolkit's own that it would be drawn in.
    static void use();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
        QWidget const* widget) const override;
    void drawComplexControl(ComplexControl control, QStyleOptionComplex const* option,
        QPainter* painter, QWidget const* widget) const override;
    QIcon standardIcon(
        StandardPixmap kind, QStyleOption const* option, QWidget const* widget) const override;
};

} // namespace pixelhain
