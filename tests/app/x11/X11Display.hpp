#pragma once

#include <QByteArray>
#include <QProcess>

namespace ostrivane {

/// An X server without a window manager and without a compositor, for as long as this object lives.
class X11Display {
public:
    X11Display() {
        server.setProcessChannelMode(QProcess::SeparateChannels);
        server.start(QStringLiteral("Xvfb"),
                     {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                      QStringLiteral("1400x1000x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        constexpr int patience = 30'000;
        while (!server.canReadLine() && server.waitForReadyRead(patience)) {
        }
        number = server.readLine().trimmed();
    }
    ~X11Display() { end(); }
    X11Display(const X11Display&) = delete;
    X11Display& operator=(const X11Display&) = delete;

    /// For `DISPLAY`; empty when the server did not start.
    QByteArray name() const { return number.isEmpty() ? QByteArray() : ":" + number; }

    /// The display goes away under its programs.
    void end() {
        server.kill();
        server.waitForFinished();
    }

private:
    QProcess server;
    QByteArray number;
};

} // namespace ostrivane
