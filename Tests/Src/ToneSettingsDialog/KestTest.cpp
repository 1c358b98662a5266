#include "Host/Interface/UI/UI_NodeManager.h"
#include "Src/ToneSettingsDialog/Kest.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include <gtest/gtest.h>

namespace {

bool gAskedToCreate = true;

}  // namespace

// Stands in front of the host's own, which answers the same.
zelui::ui::UI_NodeManager* zelui::ui::UI_NodeManager::Get(bool create) {
    static UI_NodeManager manager;
    gAskedToCreate = create;
    return &manager;
}

TEST(Kest, BringsNoUserInterfaceUp) {
    gAskedToCreate = true;
    (void)Kest::GetDrawSupplier();
    EXPECT_FALSE(gAskedToCreate);
}

TEST(Kest, ReachesWhatTheToolkitOffers) {
    test::FakeToolkit toolkit;
    EXPECT_EQ(Kest::GetTopLevelMenu(), toolkit.MainWindow());
    EXPECT_EQ(Kest::GetWorkspace(), toolkit.MainWindow()->GetWorkspace());
    EXPECT_NE(Kest::GetWorkspace(), nullptr);
    EXPECT_EQ(Kest::GetDrawSupplier(), toolkit.DefaultDrawSupplier());
    EXPECT_NE(Kest::GetDrawSupplier(), nullptr);
}

TEST(Kest, HasNoWorkspaceWithoutAMainWindow) {
    test::FakeToolkit toolkit;
    toolkit.hasMainWindow = false;
    EXPECT_EQ(Kest::GetTopLevelMenu(), nullptr);
    EXPECT_EQ(Kest::GetWorkspace(), nullptr);
}

TEST(Kest, ReachesNothingWithoutAToolkit) {
    EXPECT_EQ(Kest::GetTopLevelMenu(), nullptr);
    EXPECT_EQ(Kest::GetWorkspace(), nullptr);
    EXPECT_EQ(Kest::GetDrawSupplier(), nullptr);
}
