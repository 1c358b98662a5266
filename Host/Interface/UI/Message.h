#pragma once

#include <boost/bind/bind.hpp>
#include <boost/function.hpp>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "../Core/Casts.h"
#include "../Core/Export.h"

namespace zelui::ui {

/// Something that a node tells those who asked to be told. Its destructor is the host's, like that of every class
/// that is cast to: with it comes the class's type, which then is the same object on both sides, as it has to be
/// where types are told apart by address.
class ZEL_API Message {  // NOLINT(cppcoreguidelines-special-member-functions): copied like one without
public:
    virtual ~Message();
};

/// What is called with a message, shared between those who may call it.
using MessageFunction = boost::function<void(Message*)>;
using MessageFunctionPtr = boost::shared_ptr<MessageFunction>;

/// Calls a function that takes one kind of message with messages of any kind; one of another kind
/// raises the host error for an invalid type conversion.
template <class MessageType>
class MessageFunctionAdapter {
public:
    explicit MessageFunctionAdapter(const boost::function<void(MessageType*)>& function) : mFunction(function) {}

    void operator()(Message* message) const {
        mFunction(zelcore::utility::NonOptionalDynamicCast<MessageType>(message));
    }

private:
    boost::function<void(MessageType*)> mFunction;
};

/// `member` of `object` as a message function. The object must outlive every call.
template <class Object, class MessageType>
MessageFunctionPtr BindMessageFunction(void (Object::*member)(MessageType*), Object* object) {
    // NOLINTNEXTLINE(modernize-avoid-bind): binds any member to any object in one line
    const boost::function<void(MessageType*)> bound = boost::bind(member, object, boost::placeholders::_1);
    return boost::make_shared<MessageFunction>(MessageFunctionAdapter<MessageType>(bound));
}

}  // namespace zelui::ui
