#include "Host/Desktop/QtToolkit.h"
#include "Host/Interface/Core/Casts.h"
#include "Tests/Host/Desktop/OpenDialog.h"
#include "Tests/Host/Desktop/TestForms.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QWidget>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using test::Build;
using test::FormWithOneOfEach;
using zelcore::utility::NonOptionalDynamicCast;
using zelui::controls::UI_Button;
using zelui::controls::UI_ControlChangedMessage;
using zelui::controls::UI_ControlView;
using zelui::controls::UI_HotTextNumber;
using zelui::controls::UI_Popup;
using zelui::controls::UI_RadioButton;
using zelui::ui::Message;
using zelui::ui::MessageFunction;
using zelui::ui::NodeRef;
using zelui::ui::UI_DialogView;

template <class Control>
Control& Find(const NodeRef<UI_DialogView>& dialog, const char* name) {
    return *NonOptionalDynamicCast<Control>(dialog->GetUINodePtr(name, true));
}

template <class Function>
void OnChange(UI_ControlView& control, Function function) {
    control.NotifyWhenChanged(boost::make_shared<MessageFunction>(function));
}

TEST(Controls, AreFoundByNameAndOnlyThere) {
    const auto dialog = Build(FormWithOneOfEach());
    EXPECT_NE(dialog->GetUINodePtr("number", true), nullptr);
    EXPECT_EQ(dialog->GetUINodePtr("number", true), dialog->GetUINodePtr("number", false));
    EXPECT_EQ(dialog->GetUINodePtr("nothing", true), nullptr);
    EXPECT_EQ(dialog->GetUINodePtr("", true), nullptr);
    EXPECT_EQ(dialog->GetUINodePtr("number", true)->GetUINodePtr("first", true), nullptr);
}

TEST(Controls, ThatWereLookedUpAreRemembered) {
    const auto dialog = Build(FormWithOneOfEach());
    for (const char* const name : {"okButton", "number", "wheel"}) {
        (void)dialog->GetUINodePtr(name, true);
    }
    EXPECT_EQ(dialog->LookedUp().missing, (std::vector<std::string>{"okButton", "wheel"}));
    EXPECT_EQ(dialog->LookedUp().lastFound, "");
    (void)dialog->GetUINodePtr("list", true);
    EXPECT_EQ(dialog->LookedUp().lastFound, "list");
    EXPECT_EQ(dialog->LookedUp().lastKind, "QComboBox");
}

TEST(Controls, InsideAnotherWidgetAreFoundOnlyWhenAskedFor) {
    const auto dialog = Build(test::Form(R"(<widget class="QGroupBox" name="box">
        <widget class="QPushButton" name="inner"/></widget>)"));
    EXPECT_EQ(dialog->GetUINodePtr("inner", false), nullptr);
    EXPECT_EQ(dialog->GetUINodePtr("inner", true), dialog->GetUINodePtr("box", false)->GetUINodePtr("inner", false));
}

TEST(Controls, OfAnotherKindAreNotTakenForWhatIsWanted) {
    const auto dialog = Build(FormWithOneOfEach());
    EXPECT_THROW(Find<UI_Popup>(dialog, "number"), zelcore::config::Error);
    EXPECT_THROW(Find<UI_HotTextNumber>(dialog, "button"), zelcore::config::Error);
}

TEST(Controls, SetByCodeReportNothing) {
    const auto dialog = Build(FormWithOneOfEach());
    int reports = 0;
    for (const char* const name : {"number", "first", "second", "list", "button"}) {
        OnChange(Find<UI_ControlView>(dialog, name), [&](Message*) { ++reports; });
    }
    Find<UI_HotTextNumber>(dialog, "number").SetValue(50);
    Find<UI_HotTextNumber>(dialog, "number").SetMaxValue(20);
    Find<UI_RadioButton>(dialog, "first").SetValue(UI_RadioButton::kOn);
    Find<UI_RadioButton>(dialog, "second").SetValue(UI_RadioButton::kOn);
    Find<UI_RadioButton>(dialog, "second").SetValue(UI_RadioButton::kOff);
    Find<UI_Popup>(dialog, "list").AddItem(u"one");
    Find<UI_Popup>(dialog, "list").SetValue(0);
    Find<UI_ControlView>(dialog, "number").SetDisabled(true);
    EXPECT_EQ(reports, 0);
}

TEST(Controls, ANumberKeepsEveryBitItWasGiven) {
    const auto dialog = Build(FormWithOneOfEach());
    auto& number = Find<UI_HotTextNumber>(dialog, "number");
    for (const double value : {1.0 / 3, -5.0, 1e300, 0.1 + 0.2, std::numeric_limits<double>::infinity()}) {
        number.SetValue(value);
        EXPECT_EQ(number.GetValue(), value);
        number.SetMaxValue(7);
        EXPECT_EQ(number.GetValue(), value);
    }
    number.SetValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(number.GetValue(), number.GetValue());
}

TEST(Controls, ANumberBeyondItsLimitIsSteppedFromWhereItStandsOnceTheLimitIsRaised) {
    const auto dialog = Build(FormWithOneOfEach());
    auto& number = Find<UI_HotTextNumber>(dialog, "number");  // up to 100
    number.SetValue(150);
    number.SetMaxValue(200);
    test::WithDialog([&] { dialog->RunModal(); },
                     [](test::DialogHands& hands) {
                         hands.Wheel("number", 1);
                         hands.ClickCloseBox();
                     });
    EXPECT_EQ(number.GetValue(), 151);
}

TEST(Controls, OneRadioButtonGoingOnTurnsTheOtherOff) {
    const auto dialog = Build(FormWithOneOfEach());
    auto& first = Find<UI_RadioButton>(dialog, "first");
    auto& second = Find<UI_RadioButton>(dialog, "second");
    first.SetValue(UI_RadioButton::kOn);
    second.SetValue(UI_RadioButton::kOn);
    EXPECT_EQ(first.GetValue(), UI_RadioButton::kOff);
    second.SetValue(UI_RadioButton::kOff);
    EXPECT_EQ(second.GetValue(), UI_RadioButton::kOff);
}

TEST(Controls, AListCountsItsItemsAndChoosesNoneThatIsNotThere) {
    const auto dialog = Build(FormWithOneOfEach());
    auto& list = Find<UI_Popup>(dialog, "list");
    EXPECT_EQ(list.GetValue(), -1);
    EXPECT_EQ(list.AddItem(u"zero"), 0);
    EXPECT_EQ(list.AddItem(u"one"), 1);
    EXPECT_EQ(list.GetValue(), -1);
    list.SetValue(1);
    EXPECT_EQ(list.GetValue(), 1);
    list.SetValue(2);
    EXPECT_EQ(list.GetValue(), -1);
    list.SetValue(std::int64_t{1} << 32);
    EXPECT_EQ(list.GetValue(), -1);
}

TEST(Controls, ReportWhatAPersonDidWithTheRightMessage) {
    const auto dialog = Build(FormWithOneOfEach());
    auto& number = Find<UI_HotTextNumber>(dialog, "number");
    std::vector<double> seen;
    OnChange(number, [&](Message* message) {
        EXPECT_NE(dynamic_cast<UI_ControlChangedMessage*>(message), nullptr);
        seen.push_back(number.GetValue());
    });
    test::WithDialog([&] { dialog->RunModal(); },
                     [](test::DialogHands& hands) {
                         hands.Wheel("number", 2);
                         hands.ClickCloseBox();
                     });
    EXPECT_EQ(seen, std::vector<double>{2.0});
}

TEST(Controls, WhatAHandlerThrowsEndsTheDialogAndArrivesAtItsCaller) {
    const auto dialog = Build(FormWithOneOfEach());
    OnChange(Find<UI_Button>(dialog, "button"), [](Message*) { throw std::domain_error("from a handler"); });
    test::WithDialog([&] { EXPECT_THROW(dialog->RunModal(), std::domain_error); },
                     [](test::DialogHands& hands) {
                         hands.Click("button");
                         EXPECT_FALSE(hands.Dialog().isVisible());
                     });
}

TEST(Controls, OutliveTheirDialogHarmlessly) {
    auto dialog = Build(FormWithOneOfEach());
    const NodeRef<UI_HotTextNumber> number(&Find<UI_HotTextNumber>(dialog, "number"));
    const NodeRef<UI_Popup> list(&Find<UI_Popup>(dialog, "list"));
    const NodeRef<UI_RadioButton> radio(&Find<UI_RadioButton>(dialog, "first"));
    dialog = {};
    number->SetValue(5);
    number->SetDisabled(true);
    radio->SetValue(UI_RadioButton::kOn);
    EXPECT_EQ(number->GetValue(), 0);
    EXPECT_EQ(list->AddItem(u"none"), -1);
    EXPECT_EQ(radio->GetValue(), UI_RadioButton::kOff);
    EXPECT_EQ(number->GetUINodePtr("list", true), nullptr);
}

TEST(Controls, CloseWithoutARunDoesNothing) {
    const auto dialog = Build(FormWithOneOfEach());
    dialog->Close();
    test::WithDialog([&] { dialog->RunModal(); }, [](test::DialogHands& hands) { hands.ClickCloseBox(); });
}

TEST(Toolkit, ShowsDialogsOverTheMainWindowWhenThereIsOne) {
    QWidget window;
    zelui::qt::QtToolkit toolkit(&window);
    const auto dialog = toolkit.BuildDialog(FormWithOneOfEach(), u"Test", nullptr, toolkit.MainWindow());
    test::WithDialog([&] { dialog->RunModal(); },
                     [&](test::DialogHands& hands) {
                         EXPECT_EQ(hands.Dialog().parentWidget(), &window);
                         EXPECT_TRUE(hands.Dialog().isModal());
                         hands.ClickCloseBox();
                     });
    EXPECT_EQ(zelui::qt::QtToolkit().MainWindow(), nullptr);
}

TEST(Toolkit, AMainWindowThatIsGoneIsNone) {
    auto window = std::make_unique<QWidget>();
    zelui::qt::QtToolkit toolkit(window.get());
    const auto dialog = toolkit.BuildDialog(FormWithOneOfEach(), u"Test", nullptr, toolkit.MainWindow());
    window.reset();
    EXPECT_EQ(toolkit.MainWindow(), nullptr);
    dialog->RunModal();  // its window went with the other one
}

}  // namespace
