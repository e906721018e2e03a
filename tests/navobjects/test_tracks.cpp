// Tracks: the .trk file, recording by time, course and distance, drawing.
#include "core/Paths.h"
#include "navobjects/Tracks.h"
#include "platform/fake/RecordingCanvas.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

struct TrackTest : ::testing::Test {
    NavWorld w;
    Tracks tr{w.ctx};
    void SetUp() override { tr.InitTracks(); }
    std::string Copy(const std::string& file) {
        WriteFile(w.Path("Tracks/" + file), NavData("tracks/" + file));
        return w.Path("Tracks/" + file);
    }
};

TEST_F(TrackTest, FilesReadAsTracks) {
    struct Case {
        const char* file;
        size_t segments, points;
        bool message;
    } cases[] = {
        {"two-segments.trk", 2, 5, false}, {"one-line.trk", 0, 0, false},
        {"foreign.trk", 0, 0, false},    // not numeric: silently empty
        {"short-line.trk", 1, 1, true},  // damaged: what was read stays
        {"missing.trk", 0, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        NavWorld world;
        Tracks t(world.ctx);
        t.InitTracks();
        std::string path = world.Path(std::string("Tracks/") + c.file), bytes;
        if (std::string(c.file) != "missing.trk") WriteFile(path, bytes = NavData(std::string("tracks/") + c.file));
        int redraws = world.chart.redraws;
        t.ReadTrackFile(path);
        ASSERT_EQ(t.Track.size(), c.segments);
        EXPECT_EQ(t.PointCount(), c.points);
        ASSERT_EQ(world.Errors().size(), c.message ? 1u : 0u);
        EXPECT_EQ(world.chart.redraws, redraws + 1);
        if (c.message) {
            EXPECT_TRUE(Has(world.Errors()[0], "line 4.")) << world.Errors()[0];
            world.dialogs.replies.push_back(mb::No);
            EXPECT_FALSE(t.SaveTrackFile());
            EXPECT_EQ(ReadFile(path), bytes);
        } else if (c.segments == 2) {  // a whole file saves again byte for byte
            EXPECT_EQ(t.Track[0].Points[1].Wgs84, (LatLong{-17990.25, 180012.5}));
            t.FileName = world.Path("Tracks/copy.trk");
            ASSERT_TRUE(t.SaveTrackFile());
            EXPECT_EQ(ReadFile(t.FileName), bytes);
        }
    }
}

TEST_F(TrackTest, RecordingByTimeCourseAndDistance) {
    w.reg.SaveSetting(Key::VesselTrackTimeInterval, "5.0");
    w.reg.SaveSetting(Key::VesselTrackCourseChange, "10.0");
    w.reg.SaveSetting(Key::VesselTrackDistanceMode, "True");
    w.reg.SaveSetting(Key::VesselTrackDistance, "0.5");
    double t = 86400.0 - 120.0;  // two minutes to midnight
    LatLong p = DM(50, 0, -5, 0);
    EXPECT_TRUE(tr.TrackCheck(p, 355.0, t));           // the first point
    EXPECT_FALSE(tr.TrackCheck(p, 2.0, t + 60));        // 7 degrees the short way
    EXPECT_TRUE(tr.TrackCheck(p, 5.0, t + 60));         // 10 degrees across north
    EXPECT_FALSE(tr.TrackCheck(p, 5.0, 230.0));         // 4m50s after that point, across midnight
    EXPECT_TRUE(tr.TrackCheck(p, 5.0, 240.0));          // 5 minutes
    EXPECT_FALSE(tr.TrackCheck(DM(50, 0.4, -5, 0), 5.0, 250.0));
    EXPECT_TRUE(tr.TrackCheck(DM(50, 0.6, -5, 0), 5.0, 260.0));  // 0.6 of a mile
    EXPECT_EQ(tr.PointCount(), 4u);
    EXPECT_EQ(tr.Track.size(), 1u);
    // A restart opens a segment; recording off adds nothing.
    tr.StartSegment();
    EXPECT_TRUE(tr.TrackCheck(p, 5.0, 270.0));
    EXPECT_EQ(tr.Track.size(), 2u);
    w.reg.SaveSetting(Key::VesselTrackMode, "False");
    EXPECT_FALSE(tr.TrackCheck(DM(51, 0, -5, 0), 90.0, 5000.0));
}

TEST_F(TrackTest, DrawnPieceByPieceWithTheTrackPen) {
    tr.ReadTrackFile(Copy("two-segments.trk"));
    w.reg.SaveSetting(Key::VesselTrackColour, "12");
    w.reg.SaveSetting(Key::VesselTrackLineStyle, "1");
    RecordingCanvas c;
    tr.DrawTracks(c);
    std::vector<RecordingCanvas::Call> lines = c.Of("Line");
    ASSERT_EQ(lines.size(), 3u);  // one piece in the first segment, two in the second: never joined
    EXPECT_EQ(lines[0].pen, (Pen{MakeRgb(255, 0, 0), 1, PenStyle::Dash}));
    EXPECT_EQ(lines[1].points[0], w.chart.Pixel(LatLong{-17000, 181000}));
    ASSERT_EQ(w.chart.legs.size(), 3u);
    EXPECT_FALSE(w.chart.legs[0].labelWanted);
    w.reg.SaveSetting(Key::VesselTrackDisplay, "False");
    c.calls.clear();
    tr.DrawTracks(c);
    EXPECT_TRUE(c.calls.empty());
}

}  // namespace
}  // namespace ombra::test
