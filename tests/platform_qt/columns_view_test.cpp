// Lists close up over what is hidden: those of the display setup in columns of ten, the console's
// values in rows.
#include "platform/qt/columns_view.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

struct Columns : testing::Test {
  /// Shows the record boxes of channels 1 to `last` but `hidden`.
  void ShowBoxes(int last, int hidden) {
    SetupDisplay.Load = nullptr;
    for (int channel = 1; channel <= last; ++channel) {
      SetupDisplay.chkRecordChan(channel).Visible = channel != hidden;
    }
    Show(SetupDisplay);
    world.Settle();
  }
  QRect Place(int channel) { return world.Find(SetupDisplay.chkRecordChan(channel)).geometry(); }

  WindowWorld world;
};

TEST_F(Columns, HoldTenBoxesEach) {
  ShowBoxes(23, 0);
  for (int channel = 2; channel <= 23; ++channel) {
    const QRect above = Place(channel - 1);
    const QRect here = Place(channel);
    const bool begins = channel == 11 || channel == 21;
    EXPECT_EQ(here.left() > above.left(), begins) << channel;
    EXPECT_EQ(here.top(), begins ? Place(1).top() : above.top() + above.height()) << channel;
  }
}

TEST_F(Columns, LeaveNoRoomForWhatIsHidden) {
  ShowBoxes(12, 5);
  EXPECT_EQ(Place(6).top(), Place(4).top() + Place(4).height());
  EXPECT_EQ(Place(11).left(), Place(1).left()) << "the tenth that is shown";
  EXPECT_GT(Place(12).left(), Place(1).left());
}

TEST_F(Columns, OfTenTakeTheWholeWidth) {
  ShowBoxes(10, 0);
  const QWidget* area = world.Find(SetupDisplay.chkRecordChan(1)).parentWidget();
  EXPECT_EQ(Place(1).width(), area->width());
}

struct Values : testing::Test {
  /// Shows the labels and values of these channels alone.
  void ShowValues(const std::vector<int>& shown) {
    Main.Load = nullptr;
    for (int channel = 1; channel <= 30; ++channel) {
      const bool visible = std::find(shown.begin(), shown.end(), channel) != shown.end();
      Main.lblChanLabel(channel).Visible = Main.lblChanValue(channel).Visible = visible;
    }
    Show(Main);
    world.Settle();
  }
  QRect Label(int channel) { return world.Find(Main.lblChanLabel(channel)).geometry(); }
  QRect Value(int channel) { return world.Find(Main.lblChanValue(channel)).geometry(); }

  WindowWorld world;
};

TEST_F(Values, OfThePresentChannelsTakeTheNextFreeRow) {
  ShowValues({1, 2, 3, 4});
  std::vector<QRect> rows;
  for (const int channel : {1, 2, 3, 4}) rows.push_back(Label(channel));
  const int channels_with_gaps[] = {2, 7, 14, 30};
  ShowValues({std::begin(channels_with_gaps), std::end(channels_with_gaps)});
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const int channel = channels_with_gaps[row];
    EXPECT_EQ(Label(channel), rows[row]) << channel;
    EXPECT_EQ(Value(channel).top(), rows[row].top()) << channel;
  }
  EXPECT_GT(rows[1].top(), rows[0].bottom());
}

}  // namespace
}  // namespace penlog
