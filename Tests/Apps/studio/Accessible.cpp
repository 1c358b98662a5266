#include "Tests/Apps/studio/Accessible.h"

#include <QDBusMessage>
#include <QDBusVariant>

namespace test {

namespace {

constexpr const char* kAccessible = "org.a11y.atspi.Accessible";
constexpr int kShowing = 25;  // of AT-SPI's states

const QDBusArgument& operator>>(const QDBusArgument& argument, AccessibleAddress& address) {
    argument.beginStructure();
    argument >> address.service >> address.path;
    argument.endStructure();
    return argument;
}

}  // namespace

QVariant Accessible::Call(const char* interface, const char* method, const QVariantList& arguments) const {
    QDBusMessage call = QDBusMessage::createMethodCall(mAddress.service, mAddress.path.path(), interface, method);
    call.setArguments(arguments);
    const QDBusMessage answer = mBus.call(call, QDBus::Block, 20000);
    return answer.arguments().isEmpty() ? QVariant() : answer.arguments().constFirst();
}

QVariant Accessible::Property(const char* name) const {
    return Call("org.freedesktop.DBus.Properties", "Get", {kAccessible, name}).value<QDBusVariant>().variant();
}

QString Accessible::Name() const {
    return Property("Name").toString();
}

QString Accessible::Description() const {
    return Property("Description").toString();
}

QString Accessible::Role() const {
    return Call(kAccessible, "GetRoleName").toString();
}

bool Accessible::IsShowing() const {
    const auto states = qdbus_cast<QList<quint32>>(Call(kAccessible, "GetState"));
    return !states.isEmpty() && (states.constFirst() >> kShowing & 1U) == 1;
}

std::vector<Accessible> Accessible::Children() const {
    const auto answer = Call(kAccessible, "GetChildren").value<QDBusArgument>();
    std::vector<Accessible> children;
    answer.beginArray();
    while (!answer.atEnd()) {
        AccessibleAddress address;
        answer >> address;
        children.emplace_back(mBus, address);
    }
    answer.endArray();
    return children;
}

std::optional<Accessible> Accessible::Find(const QString& role, const QString& name) const {
    for (const Accessible& child : Children()) {
        if (child.Role() == role && child.Name().startsWith(name) && child.IsShowing()) {
            return child;
        }
        if (auto found = child.Find(role, name)) {
            return found;
        }
    }
    return std::nullopt;
}

QString Accessible::Tree() const {
    QString tree;
    for (const Accessible& child : Children()) {
        tree += child.Role() + ": " + child.Name() + "\n" + child.Tree();
    }
    return tree;
}

void Accessible::Act() const {
    (void)Call("org.a11y.atspi.Action", "DoAction", {0});
}

void Accessible::SetText(const QString& text) const {
    (void)Call("org.a11y.atspi.EditableText", "SetTextContents", {text});
}

QString Accessible::Text() const {
    return Call("org.a11y.atspi.Text", "GetText", {0, -1}).toString();
}

std::optional<Accessible> AccessibleDesktop() {
    const QDBusMessage ask =
        QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    const QDBusMessage answer = QDBusConnection::sessionBus().call(ask);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    const QDBusConnection bus = QDBusConnection::connectToBus(answer.arguments().constFirst().toString(), "a11y");
    return Accessible(bus, {"org.a11y.atspi.Registry", QDBusObjectPath("/org/a11y/atspi/accessible/root")});
}

}  // namespace test
