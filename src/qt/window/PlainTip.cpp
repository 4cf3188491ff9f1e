#include "qt/window/PlainTip.h"
#include <QTextDocument>

namespace pixelhain {

QString plainTip(QString const& text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
}

} // namespace pixelhain
