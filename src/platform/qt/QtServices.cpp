#include "platform/qt/QtServices.h"

#include <QApplication>
#include <QDate>
#include <QWidget>

#include "platform/qt/QtText.h"

#ifdef Q_OS_WIN
#include <windows.h>
// After windows.h, which it needs.
#include <mmsystem.h>
#else
#include <QProcess>
#include <QStandardPaths>
#endif

namespace vantor {

namespace {

// While a sound plays nothing is painted: what the coin changed must be on the screen before.
void repaintWindows() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) window->repaint();
    }
}

#ifndef Q_OS_WIN
constexpr int kPlayerMs = 5000;

enum class Playing { done, failed, hung };

Playing playWith(const QString& player, const QString& file) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(player, {file});
    if (process.waitForFinished(kPlayerMs)) {
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
                   ? Playing::done
                   : Playing::failed;
    }
    if (process.state() == QProcess::NotRunning) return Playing::failed;
    process.kill();
    process.waitForFinished(kPlayerMs);
    return Playing::hung;
}
#endif

}  // namespace

void QtSoundPlayer::play(const std::filesystem::path& file) {
    std::error_code ignored;
    if (hangs_ || !std::filesystem::is_regular_file(file, ignored)) return;
    repaintWindows();
#ifdef Q_OS_WIN
    PlaySoundW(file.c_str(), nullptr, SND_FILENAME | SND_SYNC | SND_NODEFAULT);
#else
    for (const char* name : {"paplay", "pw-play", "aplay"}) {
        const QString player = QStandardPaths::findExecutable(QLatin1String(name));
        if (player.isEmpty()) continue;
        const Playing result = playWith(player, pathToQt(file));
        hangs_ = result == Playing::hung;
        if (result != Playing::failed) return;
    }
#endif
}

Date QtCalendar::today() const {
    const QDate today = QDate::currentDate();
    return {.year = today.year(), .month = today.month(), .day = today.day()};
}

QtInstanceGuard::QtInstanceGuard(const std::filesystem::path& folder)
    : lock_(std::make_unique<QLockFile>(pathToQt(folder / "vantor-programmer.lock"))) {
    // However long it has run: only an owner that is gone makes the lock stale.
    lock_->setStaleLockTime(0);
}

QtInstanceGuard::~QtInstanceGuard() = default;

bool QtInstanceGuard::acquire() {
    return lock_->tryLock(0) || lock_->error() != QLockFile::LockFailedError;
}

}  // namespace vantor
