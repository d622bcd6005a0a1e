#include "platform/qt/QtText.h"

#include <QFileInfo>

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

QString toBoxText(std::string_view windows1252) {
    return toQt(windows1252).replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

QString pathToQt(const std::filesystem::path& path) {
    return QFileInfo(path).filePath();
}

std::filesystem::path pathFromQt(const QString& path) {
    return QFileInfo(path).filesystemFilePath();
}

}  // namespace vantor
