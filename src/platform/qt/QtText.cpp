#include "platform/qt/QtText.h"

#include "catalogue/Text.h"

namespace vantor {

QString toQt(std::string_view windows1252) {
    return QString::fromStdString(toUtf8(windows1252));
}

std::string fromQt(const QString& text) {
    return fromUtf8(text.toStdString());
}

QString toCaption(std::string_view windows1252) {
    return toQt(windows1252).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace vantor
