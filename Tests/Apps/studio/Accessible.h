#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>
#include <vector>

namespace test {

/// Where an accessible object is to be found.
struct AccessibleAddress {
    QString service;
    QDBusObjectPath path;
};

/// An object of another program as assistive technology sees it, over AT-SPI.
class Accessible {
public:
    Accessible(const QDBusConnection& bus, AccessibleAddress address) : mBus(bus), mAddress(std::move(address)) {}

    [[nodiscard]] QString Name() const;
    [[nodiscard]] QString Description() const;
    [[nodiscard]] QString Role() const;
    [[nodiscard]] bool IsShowing() const;
    [[nodiscard]] std::vector<Accessible> Children() const;

    /// The first among those inside, in depth, of this role and with a name that begins like this, which shows.
    [[nodiscard]] std::optional<Accessible> Find(const QString& role, const QString& name) const;

    /// All inside, a line each with role and name, for messages.
    [[nodiscard]] QString Tree() const;

    /// Does its first action: presses a button.
    void Act() const;
    void SetText(const QString& text) const;
    [[nodiscard]] QString Text() const;

private:
    [[nodiscard]] QVariant Call(const char* interface, const char* method, const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant Property(const char* name) const;

    QDBusConnection mBus;
    AccessibleAddress mAddress;
};

/// The root of what is accessible in this session, on the bus that the session says. Nothing where there is no such
/// bus.
[[nodiscard]] std::optional<Accessible> AccessibleDesktop();

}  // namespace test
