#include "app/widgets/Strings.hpp"
#include "app/window/AutostartEntry.hpp"
#include "app/window/LoginItem.hpp"
#include "core/model/WholeFile.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace ostrivane {

namespace {

/// "~/.config/autostart/ostrivane.desktop".
class AutostartLoginItem final : public LoginItem {
public:
    State state() const override {
        QFile entry(path());
        if (!entry.exists())
            return State::off;
        if (!entry.open(QIODevice::ReadOnly))
            return State::unknown;
        constexpr qint64 most = 65536;
        return isEnabledEntry(entry.read(most).toStdString()) ? State::on : State::off;
    }

    std::optional<std::string> set(bool enabled) override {
        if (!enabled) {
            QFile entry(path());
            if (!entry.exists() || entry.remove())
                return std::nullopt;
            return entry.errorString().toStdString();
        }
        if (!QDir().mkpath(folder()))
            return "The folder " + folder().toStdString() + " cannot be made.";
        return WholeFile::write(path().toStdString(),
                                autostartEntry(QCoreApplication::applicationFilePath().toStdString()));
    }

private:
    static QString folder() {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/autostart");
    }
    static QString path() { return folder() + QStringLiteral("/ostrivane.desktop"); }
};

} // namespace

std::unique_ptr<LoginItem> nativeLoginItem() {
    return std::make_unique<AutostartLoginItem>();
}

} // namespace ostrivane
