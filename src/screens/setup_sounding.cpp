#include "screens/setup_sounding.h"

#include <algorithm>

#include "conelink/cone_state.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "display/display_state.h"
#include "forms/create_new_directory_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/disk.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "screens/last_sounding_parameters.h"
#include "screens/typed_depth.h"

namespace penlog {

namespace {

constexpr const char* kDefaultName = "CPT TEST(001)";
constexpr const char* kParentFolder = "..";

std::string RootOf(const std::string& drive) {
  const char separator = TheDisk().Separator();
  return !drive.empty() && drive.back() == separator ? drive : drive + separator;
}

std::string DefaultDrive() {
  const auto drives = TheDisk().Drives();
  return drives.empty() ? std::string(1, TheDisk().Separator()) : drives.front();
}

void ShowPath() {
  SetupSounding.lblFileName.Caption =
      JoinPath(setup_sounding.Directory, SetupSounding.txtFileName.Text);
}

void ListFolder() {
  auto& folders = SetupSounding.Dir1;
  auto& files = SetupSounding.File1;
  folders.List.clear();
  files.List.clear();
  if (!IsRoot(setup_sounding.Directory)) folders.List.push_back(kParentFolder);
  for (const auto& entry : TheDisk().List(setup_sounding.Directory)) {
    if (entry.is_folder) {
      folders.List.push_back(entry.name);
    } else if (EndsWithNoCase(entry.name, ".cpt")) {
      files.List.push_back(entry.name);
    }
  }
  folders.ListIndex = files.ListIndex = -1;
  folders.Text = setup_sounding.Directory;
  files.Text.clear();  // of another folder
}

void ChooseDrive(const std::string& drive) {
  session.LastDrive = drive;
  auto& list = SetupSounding.Drive1;
  list.Text = drive;
  const auto found = std::find(list.List.begin(), list.List.end(), drive);
  list.ListIndex = found == list.List.end() ? -1 : static_cast<int>(found - list.List.begin());
}

void LoadRootPlace() {
  ChooseDrive(DefaultDrive());
  ChooseDirectory(RootOf(DefaultDrive()));
}

/// The data directory: it can be written to by whoever runs the console, which a root can't.
void LoadDefaultPlace() {
  if (!TheDisk().FolderExists(session.DataDirectory)) return LoadRootPlace();
  for (const std::string& drive : TheDisk().Drives()) {
    if (StartsWith(session.DataDirectory, drive)) ChooseDrive(drive);
  }
  ChooseDirectory(session.DataDirectory);
}

void DefaultFields() {
  session.SoundingName = kDefaultName;
  for (std::string* field : {&session.OperatorName, &session.SoundingLocation, &session.JobNumber,
                             &session.HoleNumber, &session.HeaderNote, &session.FooterNote1,
                             &session.FooterNote2, &session.LastDirectory, &session.LastDrive}) {
    field->clear();
  }
}

bool AnyModule() {
  return std::any_of(cone.ModulePresent.begin() + 1, cone.ModulePresent.end(),
                     [](std::int16_t present) { return present == -1; });
}

/// True when the last sounding's values were read.
bool ReadLastParameters() {
  bool read = false;
  if (!TheDisk().FileExists(LastSoundingParametersPath())) {
    DefaultFields();
    Tell("Last sounding parameters file missing. Default values loaded");
  } else {
    LoadLastSoundingParameters();
    read = true;
  }
  return read;
}

void SettleGraphSlots() {
  display.GraphChannel[1] = 1;
  if (!AnyModule()) RemoveResisitivityFromGraphChannels();
}

void ChooseLastPlace() {
  const auto drives = TheDisk().Drives();
  if (std::find(drives.begin(), drives.end(), session.LastDrive) == drives.end()) {
    Tell("Last drive used is missing. Switching to the root drive.");
    LoadRootPlace();
    return;
  }
  ChooseDrive(session.LastDrive);
  if (TheDisk().FolderExists(session.LastDirectory)) {
    ChooseDirectory(session.LastDirectory);
    return;
  }
  Tell("Last directory used is missing. Switching to the root directory of the last drive used.");
  ChooseDirectory(RootOf(session.LastDrive));
}

void CaptionUnits() {
  const std::string unit = settings.DepthUnits == 0 ? "(m)" : "(ft)";
  const bool elevation = settings.DepthFormat == 1;
  SetupSounding.lblStartDepth.Caption = (elevation ? "START ELEV" : "START DEPTH") + unit;
  SetupSounding.lblWaterTable.Caption =
      (elevation ? "WATER TABLE ELEV" : "WATER TABLE DEPTH") + unit;
}

void FillBoxes() {
  SetupSounding.txtOperator.Text = session.OperatorName;
  SetupSounding.txtConeNumber.Text = cone.ConeId;
  SetupSounding.txtLocation.Text = session.SoundingLocation;
  SetupSounding.txtJobNumber.Text = session.JobNumber;
  SetupSounding.txtHoleNumber.Text = session.HoleNumber;
  SetupSounding.txtHeader.Text = session.HeaderNote;
  SetupSounding.txtFooter1.Text = session.FooterNote1;
  SetupSounding.txtFooter2.Text = session.FooterNote2;
  SetupSounding.txtStartDepth.Text = "0";
  SetText(SetupSounding.txtFileName, session.SoundingName);
}

/// With the naming by job and hole the numbers of the last sounding name this one, too.
void NameByJobAndHole() {
  if (!session.JobNumber.empty() || !session.HoleNumber.empty()) {
    SetupSounding_txtJobOrHole_Change();
  }
}

/// Back from the display setup: what was accepted stands.
void FillFromSession() {
  FillBoxes();
  SetupSounding.txtConeNumber.Text = session.ConeNumber;
  SetupSounding.txtStartDepth.Text = TextOfDepth(session.StartDepth);
  SetupSounding.txtWaterTable.Text = TextOfDepth(session.WaterTable);
  ChooseDrive(session.LastDrive);
  ChooseDirectory(session.LastDirectory);
}

void SetMessages() {
  setup_sounding.GPSNotFoundMessage = "GPS not found.";
  setup_sounding.LostSatelliteMessage = "Lost Satellite";
}

void ShowFileNaming() {
  auto& list = SetupSounding.cmbFileNaming;
  const int mode = settings.FileNaming;
  if (mode < 0 || mode >= static_cast<int>(list.List.size())) return;
  list.ListIndex = mode;
  list.Text = list.List[static_cast<std::size_t>(mode)];
}

}  // namespace

std::string NextSoundingName(const std::string& name) {
  const auto length = CharacterCount(name);
  if (length <= 5) return kDefaultName;
  const std::string tail = Right(name, 5);
  if (tail.front() != '(' || tail.back() != ')') return name + "(001)";
  const double next = LeadingNumber(Mid(tail, 2, 3)) + 1;
  const int number = next <= 999 ? ToInteger16(next) : 0;  // "9e9" is a number, too
  return Left(name, static_cast<int>(length) - 5) + "(" + Format(number, "000") + ")";
}

std::string InvalidFileNameCharacter(const std::string& name) {
  for (const char character : {'\\', '/', ':', '*', '?', '"', '<', '>', '|'}) {
    if (name.find(character) != std::string::npos) return std::string(1, character);
  }
  // Unseen on the screen, and a line end would part the path's line in "TemporaryData.txt".
  return HasControlCharacter(name) ? "(control character)" : "";
}

void ChooseDirectory(const std::string& path) {
  setup_sounding.Directory = path;
  ListFolder();
  ShowPath();
}

void SetupSounding_Load() {
  SetupSounding.Drive1.List = TheDisk().Drives();
  CaptionUnits();
  ShowFileNaming();
  SetMessages();
  if (setup_sounding.BackFlag == -1) {
    setup_sounding.BackFlag = 0;
    FillFromSession();
    return;
  }
  try {
    const bool read = ReadLastParameters();
    if (read) {
      ChooseLastPlace();
    } else {
      LoadDefaultPlace();
    }
    // The default name is itself the first of its numbering.
    if (read && settings.FileNaming == 1) {
      session.SoundingName = NextSoundingName(session.SoundingName);
    }
  } catch (const RuntimeFault&) {
    Tell("An unkown error has occurred. Default drive and path values have been loaded.");
    LoadDefaultPlace();
  }
  SettleGraphSlots();
  FillBoxes();
  NameByJobAndHole();
  ShowPath();
}

void SetupSounding_Drive1_Click() {
  if (SetupSounding.Drive1.ListIndex < 0) return;
  session.LastDrive = SetupSounding.Drive1.Text;
  ChooseDirectory(RootOf(SetupSounding.Drive1.Text));
}

void SetupSounding_Dir1_Click() {
  if (SetupSounding.Dir1.ListIndex < 0) return;  // then the text is the path
  const std::string entry = SetupSounding.Dir1.Text;
  const std::string& folder = setup_sounding.Directory;
  ChooseDirectory(entry == kParentFolder ? FolderOf(folder) : JoinPath(folder, entry));
}

void SetupSounding_Dir1_Change() {
  const std::string typed = SetupSounding.Dir1.Text;
  const std::string path = ResolvedPath(setup_sounding.Directory, typed);
  if (!typed.empty() && TheDisk().FolderExists(path)) {
    ChooseDirectory(path);
    return;
  }
  SetupSounding.Dir1.Text = setup_sounding.Directory;
  Tell("DIRECTORY NOT FOUND: " + typed);
}

void SetupSounding_File1_Click() {
  if (SetupSounding.File1.ListIndex < 0) return;
  SetText(SetupSounding.txtFileName, SetupSounding.File1.Text);
}

void SetupSounding_txtFileName_Change() {
  ShowPath();
}

void SetupSounding_txtJobOrHole_Change() {
  if (settings.FileNaming != 2) return;
  SetText(SetupSounding.txtFileName,
          SetupSounding.txtJobNumber.Text + SetupSounding.txtHoleNumber.Text);
}

/// The name that is shown stays, but for that of job and hole: counted up is the name of the last
/// sounding, at the load.
void SetupSounding_cmbFileNaming_Click() {
  if (SetupSounding.cmbFileNaming.ListIndex < 0) return;
  settings.FileNaming = static_cast<std::int16_t>(SetupSounding.cmbFileNaming.ListIndex);
  NameByJobAndHole();
  SaveKQSettings();
}

/// The folder below which one is created stays chosen meanwhile.
void SetupSounding_Command1_Click() {
  frmCreateNewDirectory.Modal = true;
  Show(frmCreateNewDirectory);
}

}  // namespace penlog
