// The boundary store: both header forms, the re-save, marks, latches.
#include "navobjects/Boundaries.h"
#include "navobjects/Symbols.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct BoundaryStore : StoreTest<Boundaries> {
    Boundaries& bd = store;
    std::string F(const std::string& name) const { return FolderFile(name); }
    void Open(const std::string& file) { OpenBytes(NavData("boundaries/" + file), "Index name"); }
};

TEST_F(BoundaryStore, A217FileHasSevenValueHeadersAndIsResavedWithNine) {
    Open("v217.bdy");
    EXPECT_EQ(bd.CurrentName, "Range");
    ASSERT_EQ(bd.Count(), 2);
    const Boundary& a = *bd.At(1);
    EXPECT_EQ(a.Name, "BA001");
    EXPECT_EQ(a.Marks.size(), 4u);
    EXPECT_EQ(a.Display, -1);
    EXPECT_EQ(a.Filled, -1);
    EXPECT_EQ(bd.At(2)->AlarmOnExit, 1);
    EXPECT_EQ(bd.At(2)->Marks[0].Icon, 23);
    EXPECT_TRUE(w.Errors().empty());
    ASSERT_TRUE(bd.SaveBoundaryDB());
    EXPECT_EQ(ReadFile(F("vst00001.bdy")), NavData("boundaries/v217-resaved.bdy"));
}

TEST_F(BoundaryStore, OtherFormsRead) {
    struct {
        const char* file;
        StoreForm form;
        const char* name;
        size_t slots;
        int16_t colour, pattern;
    } cases[] = {
        {"oldest.bdy", StoreForm::NoHeader, "-", 1, 0, 0},
        {"present.bdy", StoreForm::Current, "Present", 2, 12, 5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        std::string name = "-";
        std::vector<Boundary> list;
        StoreForm form;
        EXPECT_TRUE(ReadBoundaryFile(NavData(std::string("boundaries/") + c.file), name, list, &form).whole);
        EXPECT_EQ(form, c.form);
        EXPECT_EQ(name, c.name);
        ASSERT_EQ(list.size(), c.slots);
        EXPECT_EQ(list[0].Colour, c.colour);
        EXPECT_EQ(list[0].Pattern, c.pattern);
        EXPECT_EQ(list[0].Marks.size(), 1u);
    }
}

TEST_F(BoundaryStore, NewBoundaryMarksAndTheirNames) {
    EXPECT_EQ(bd.NewBoundary(), 0);
    EXPECT_EQ(w.host.asked.back().title, "No Boundary database open");
    w.host.twoChoices.push_back(2);
    w.dialogs.texts = {"BDB1", "BA001"};
    int16_t b = bd.NewBoundary();
    ASSERT_EQ(b, 1);
    EXPECT_EQ(w.dialogs.asked[1].title, "Boundary:  001");
    EXPECT_EQ(bd.EditingBoundary, b);
    for (int i = 0; i < 3; ++i) bd.AddBoundaryMark(b, DM(50, i, -5, i % 2));
    bd.EndNewBoundary(b);
    EXPECT_EQ(bd.EditingBoundary, 0);
    // Into the closing side (after the last mark) and the first; names follow.
    EXPECT_EQ(bd.InsertBoundaryMark(b, 3, DM(50, 1, -5, 3)), 4);
    EXPECT_EQ(bd.InsertBoundaryMark(b, 1, DM(50, 0.5, -5, 3)), 2);
    std::vector<std::string> names;
    for (const Waypoint& m : bd.At(b)->Marks) names.push_back(m.Name);
    EXPECT_EQ(names, (std::vector<std::string>{"B1.BM1", "B1.BM2", "B1.BM3", "B1.BM4", "B1.BM5"}));
    EXPECT_EQ(bd.At(b)->Marks[1].Position.Wgs84, DM(50, 0.5, -5, 3));
    w.host.waypointDialog = [](WaypointDialogRequest&) { return false; };
    bd.EditBoundaryMark(b, 4);
    EXPECT_EQ(w.host.asked.back().title, "Boundary Mark 4");
    EXPECT_EQ(w.host.asked.back().text, "Boundary: BA001");
    // A new boundary with no marks is removed when the tool ends.
    w.dialogs.texts.push_back("Empty");
    bd.EndNewBoundary(bd.NewBoundary());
    EXPECT_EQ(bd.Count(), 1);
}

TEST_F(BoundaryStore, LatchesAreSetByTheirCaptionAndNeverStored) {
    Open("present.bdy");
    bd.AcknowledgeBoundaryAlarm("1", "Vessel Entry");
    bd.AcknowledgeBoundaryAlarm("1", "Predictor Exit");
    bd.AcknowledgeBoundaryAlarm("x", "Vessel Exit");
    bd.AcknowledgeBoundaryAlarm("9", "Vessel Exit");
    EXPECT_EQ(bd.At(1)->VesselEntryLatch, -1);
    EXPECT_EQ(bd.At(1)->PredictorExitLatch, -1);
    EXPECT_EQ(bd.At(1)->VesselExitLatch, 0);
    bd.SaveBoundaryDB();
    bd.CloseBoundaryDB();
    w.host.listPicks.push_back(0);
    bd.SelectBoundaryDB();
    EXPECT_EQ(bd.At(1)->VesselEntryLatch, 0);
    EXPECT_EQ(bd.At(1)->PredictorExitLatch, 0);
    bd.DisplayBoundary(1);  // hiding stops the watch: the alarms read Display
    EXPECT_EQ(bd.Rows()[0].Display, "No");
}

}  // namespace
}  // namespace ombra::test
