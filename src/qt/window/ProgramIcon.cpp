#include "qt/window/ProgramIcon.h"
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

// The drawing is linked in from a static library, which the linker would leave out.
static void addIconFiles()
{
    Q_INIT_RESOURCE(icons);
}

namespace pixelhain {

namespace {

// Without the toolkit's plug-in for such files, which may not be installed.
class DrawingEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, QRect const& rect, QIcon::Mode, QIcon::State) override
    {
        addIconFiles();
        QSvgRenderer renderer(QStringLiteral(":/icons/de.pixelhain.Pixelhain.svg"));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(painter, rect);
    }

    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, drawn.rect(), mode, state);
        return drawn;
    }

    QIconEngine* clone() const override { return new DrawingEngine(*this); }
    bool isNull() override { return false; }
};

} // namespace

QIcon programIcon()
{
    return QIcon::fromTheme(QStringLiteral("de.pixelhain.Pixelhain"), builtInProgramIcon());
}

QIcon builtInProgramIcon()
{
    return QIcon(new DrawingEngine);
}

} // namespace pixelhain
