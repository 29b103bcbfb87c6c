// The lists of the display setup: what is shown of them stands in columns of ten.
#include "platform/qt/columns_view.h"

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

}  // namespace
}  // namespace penlog
