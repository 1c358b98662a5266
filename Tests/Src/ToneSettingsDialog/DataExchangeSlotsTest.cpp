#include "Src/ToneSettingsDialog/ToneSettingsDialogDataExchange.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <utility>

namespace {

// The operations are called as a host built apart would call them: by their place in the table.
template <class Function>
Function Slot(void* object, std::size_t index) {
    void** table = nullptr;
    std::memcpy(&table, object, sizeof table);
    Function function = nullptr;
    std::memcpy(&function, table + index, sizeof function);
    return function;
}

template <class Result, class... Arguments>
Result CallSlot(std::size_t index, void* object, Arguments... arguments) {
    return Slot<Result (*)(void*, Arguments...)>(object, index)(object, arguments...);
}

class Tracked : public ToneSettingsDialogDataExchange {
public:
    static inline int destroyed = 0;
    static inline int freed = 0;

    ~Tracked() override { ++destroyed; }
    static void operator delete(void* memory) {
        ++freed;
        ::operator delete(memory);
    }
};

}  // namespace

TEST(DataExchangeSlots, CountInSlots0And1) {
    auto* const exchange = new ToneSettingsDialogDataExchange();
    EXPECT_EQ(CallSlot<std::int32_t>(0, exchange), 1);
    EXPECT_EQ(CallSlot<std::int32_t>(0, exchange), 2);
    EXPECT_EQ(CallSlot<std::int32_t>(1, exchange), 1);
    EXPECT_EQ(CallSlot<std::int32_t>(1, exchange), 0);
}

TEST(DataExchangeSlots, DestroyInSlot2AndDestroyAndFreeInSlot3) {
    Tracked::destroyed = 0;
    Tracked::freed = 0;
    auto* const memory = static_cast<Tracked*>(::operator new(sizeof(Tracked)));
    CallSlot<void>(2, new (memory) Tracked());
    EXPECT_EQ(Tracked::destroyed, 1);
    EXPECT_EQ(Tracked::freed, 0);
    ::operator delete(memory);

    CallSlot<void>(3, ::new Tracked());
    EXPECT_EQ(Tracked::destroyed, 2);
    EXPECT_EQ(Tracked::freed, 1);
}

TEST(DataExchangeSlots, ReleaseTheLastReferenceThroughSlot3) {
    Tracked::destroyed = 0;
    Tracked::freed = 0;
    auto* const exchange = ::new Tracked();
    exchange->AddRef();
    exchange->Release();
    EXPECT_EQ(Tracked::destroyed, 1);
    EXPECT_EQ(Tracked::freed, 1);
}

TEST(DataExchangeSlots, AnswerQueriesInSlot4AndTheRootInSlot5) {
    const Brio::InterfaceRef<ToneSettingsDialogDataExchange> exchange(new ToneSettingsDialogDataExchange());
    void* answer = nullptr;
    const CFUUIDBytes& id = GuidOf(exchange.Get());
    EXPECT_EQ((CallSlot<Brio::Result, const CFUUIDBytes*, void**>(4, exchange.Get(), &id, &answer)), 0);
    EXPECT_EQ(answer, exchange.Get());
    EXPECT_EQ(CallSlot<void*>(5, exchange.Get()), exchange.Get());
}

TEST(DataExchangeSlots, SetGetAndCancelInSlots6To8) {
    const Brio::InterfaceRef<ToneSettingsDialogDataExchange> exchange(new ToneSettingsDialogDataExchange());
    BarsAndToneInfo in;
    in.frequency = 440.0F;
    BarsAndToneInfo out;
    CallSlot<void, const BarsAndToneInfo*>(6, exchange.Get(), &in);
    CallSlot<void, BarsAndToneInfo*>(7, exchange.Get(), &out);
    EXPECT_EQ(out.frequency, 440.0F);
    EXPECT_FALSE(exchange->mUserCancelled);
    CallSlot<void>(8, exchange.Get());
    EXPECT_TRUE(exchange->mUserCancelled);
}

// Where a class with a destructor is returned is a matter of the processor; here it is where the first argument points.
#if defined(__x86_64__)
TEST(DataExchangeSlots, ConvertToARootReferenceInSlot9) {
    const Brio::InterfaceRef<ToneSettingsDialogDataExchange> exchange(new ToneSettingsDialogDataExchange());
    void* root = nullptr;
    static_assert(sizeof root == sizeof(Brio::BrioUnknownRef));
    Slot<void* (*)(void*, void*)>(exchange.Get(), 9)(&root, exchange.Get());
    EXPECT_EQ(root, exchange.Get());
    EXPECT_EQ(exchange->Release(), 1);  // the one that came with the conversion
}
#endif
