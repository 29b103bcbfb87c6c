// Controls as data: what a screen shows, without a widget. The view mirrors the values once per
// frame; handlers read and write them as plain members.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace penlog {

class Form;

/// Colour as the system names it; the look maps it to what is shown.
struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const Colour&) const = default;
};

constexpr Colour kBlack{0, 0, 0};
constexpr Colour kWhite{255, 255, 255};
constexpr Colour kRed{255, 0, 0};
constexpr Colour kGreen{0, 255, 0};
constexpr Colour kBlue{0, 0, 255};
constexpr Colour kCyan{0, 255, 255};
constexpr Colour kGrey{192, 192, 192};

/// A true or false value that counts how often it fell: a press that was queued before its button
/// was disabled and enabled again is stale, and only the count can tell.
class Flag {
 public:
  Flag(bool value = true) : value_(value) {}  // NOLINT: reads as a plain bool
  operator bool() const { return value_; }    // NOLINT
  Flag(const Flag&) = default;
  Flag& operator=(const Flag& other) { return *this = other.value_; }
  Flag& operator=(bool value) {
    if (value_ && !value) ++falls_;
    value_ = value;
    return *this;
  }
  std::uint32_t Falls() const { return falls_; }

 private:
  bool value_;
  std::uint32_t falls_ = 0;
};

enum class ControlKind {
  Label,
  Button,
  TextBox,
  CheckBox,
  OptionButton,
  ComboBox,
  ListBox,
  Shape,
  Line,
  Picture,
  Frame,
  Menu,
};

enum class FillStyle { Solid = 0, Hollow = 1 };

/// Place inside the container as fractions of its width and height; `set` is false where the
/// arrangement of the screen decides.
struct Place {
  bool set = false;
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  bool operator==(const Place&) const = default;
};

/// One drawing step of a picture, in fractions of the picture's width and height.
struct DrawStep {
  /// A tick is short, of one length in all pictures: it begins at (x1, y1) and points to (x2, y2).
  enum class Kind { Line, Text, Dot, Tick } kind = Kind::Line;
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  Colour colour;
  std::string text;
};

/// A point of a trace, in fractions of the picture's width and height; outside 0 to 1 it is
/// clipped.
struct TracePoint {
  float x = 0;
  float y = 0;
  bool operator==(const TracePoint&) const = default;
};

/// Connected segments in one colour. A chart has up to 10,000 points in each of its traces.
struct Trace {
  int series = 0;
  Colour colour;
  std::vector<TracePoint> points;
};

/// The values of every kind of control. A kind uses those that it needs.
struct ControlValues {
  std::string Caption;
  std::string Text;      ///< TextBox, ComboBox: what is typed or chosen
  bool Checked = false;  ///< CheckBox, OptionButton, Menu
  Colour ForeColor = kBlack;
  Colour BackColor = kGrey;
  Colour FillColor = kBlack;  ///< Shape
  FillStyle Fill = FillStyle::Hollow;
  bool Bold = false;
  Place Where;
  std::vector<std::string> List;    ///< ComboBox, ListBox
  std::vector<std::string> Beside;  ///< what the view shows beside each entry; may be empty
  int ListIndex = -1;               ///< -1 none
  bool operator==(const ControlValues&) const = default;
};

struct Control : ControlValues {
  Control(Form& form, std::string name, ControlKind kind);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }
  Form& Owner() const { return form_; }

  Flag Visible = true;
  Flag Enabled = true;
  Control* Container = nullptr;  ///< the frame that holds it; null: the screen itself
  /// Takes actions in any case, also below a box: the stop dialog and the hold-to-override button.
  bool AlwaysUsable = false;

  // The events of all kinds; a kind fires those that it has.
  std::function<void()> Click;                      ///< Button, CheckBox, OptionButton, lists, Menu
  std::function<void()> Press;                      ///< Button: mouse or key down
  std::function<void()> Release;                    ///< Button: up, or focus or pointer lost
  std::function<void()> Change;                     ///< TextBox
  std::function<void(double, double, bool)> Point;  ///< Picture: fractions, and whether clicked

  /// Visible with the frames and the screen that hold it.
  bool IsShown() const;
  /// Enabled with the frames that hold it.
  bool IsUsable() const;

 private:
  friend class Form;
  Form& form_;
  std::string name_;
  ControlKind kind_;
  ControlValues first_values_;
  bool first_visible_ = true;
  bool first_enabled_ = true;
  bool first_always_usable_ = false;
};

struct Label : Control {
  Label(Form& form, std::string name, std::string caption = {});
};

struct Button : Control {
  Button(Form& form, std::string name, std::string caption = {});
};

struct TextBox : Control {
  TextBox(Form& form, std::string name, std::string text = {});
};

struct CheckBox : Control {
  CheckBox(Form& form, std::string name, std::string caption = {});
};

struct OptionButton : Control {
  OptionButton(Form& form, std::string name, std::string caption = {});
};

/// A drop-down list.
struct ComboBox : Control {
  ComboBox(Form& form, std::string name);
};

/// A list that stands open: drives, folders, files too.
struct ListBox : Control {
  ListBox(Form& form, std::string name);
};

/// A lamp, a level bubble, a bar: its place may be computed.
struct Shape : Control {
  Shape(Form& form, std::string name);
};

struct Frame : Control {
  Frame(Form& form, std::string name, std::string caption = {});
};

struct MenuEntry : Control {
  MenuEntry(Form& form, std::string name, std::string caption);
};

/// A picture holds its drawing steps and how often it was cleared, so that the view draws only
/// what is new.
struct Picture : Control {
  Picture(Form& form, std::string name);
  void Cls();
  void Draw(DrawStep step) { steps.push_back(std::move(step)); }
  /// Adds a segment to the trace of that series: it goes on with the last one if it begins where
  /// that ended. Traces lie above the steps, a later one above an earlier.
  void DrawSegment(int series, Colour colour, TracePoint from, TracePoint to);

  std::vector<DrawStep> steps;
  std::vector<Trace> traces;
  std::uint32_t clearings = 0;
};

/// A row of equal controls under one name: `lblChanValue(3)`. Each stands under "lblChanValue_3".
template <class C>
class ControlArray {
 public:
  ControlArray(Form& form, const std::string& name, int first, int last) : first_(first) {
    for (int i = first; i <= last; ++i) {
      items_.push_back(std::make_unique<C>(form, name + "_" + std::to_string(i)));
    }
  }
  /// The control with that subscript; one outside the array raises a `RuntimeFault`.
  C& operator()(int subscript) const { return *items_[Offset(subscript)]; }
  int First() const { return first_; }
  int Last() const { return first_ + static_cast<int>(items_.size()) - 1; }

 private:
  std::size_t Offset(int subscript) const;

  int first_;
  std::vector<std::unique_ptr<C>> items_;
};

/// Raises the fault of a subscript outside its bounds.
[[noreturn]] void SubscriptFault(int subscript);

template <class C>
std::size_t ControlArray<C>::Offset(int subscript) const {
  if (subscript < first_ || subscript > Last()) SubscriptFault(subscript);
  return static_cast<std::size_t>(subscript - first_);
}

/// Sets the text as the program does: fires `Change` if it differs.
void SetText(Control& box, const std::string& text);
/// Sets the tick as the program does: fires `Click` if it differs.
void SetChecked(Control& box, bool checked);

}  // namespace penlog
