// The header of a sounding: where its files go, their name, who, where, start depth.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct SetupSoundingForm : Form {
  SetupSoundingForm();

  Label lblDrive{*this, "lblDrive", "DRIVE"};
  ComboBox Drive1{*this, "Drive1"};  ///< `Text` is the drive; without drives one entry, the root
  Label lblDirectory{*this, "lblDirectory", "DIRECTORY"};
  ListBox Dir1{*this, "Dir1"};  ///< `Text` is the path of the chosen folder
  Label lblFiles{*this, "lblFiles", "SOUNDING FILES"};
  ListBox File1{*this, "File1"};  ///< the ".cpt" files of that folder
  Button Command1{*this, "Command1", "CREATE NEW DIRECTORY"};

  Label lblFileNaming{*this, "lblFileNaming", "FILE NAMING"};
  ComboBox cmbFileNaming{*this, "cmbFileNaming"};  ///< 0 manual, 1 auto-increment, 2 job and hole
  Label lblFileNameCaption{*this, "lblFileNameCaption", "File Name"};
  TextBox txtFileName{*this, "txtFileName"};
  Label lblFileName{*this, "lblFileName"};  ///< the path without extension

  Label lblOperator{*this, "lblOperator", "OPERATOR"};
  TextBox txtOperator{*this, "txtOperator"};
  Label lblConeNumber{*this, "lblConeNumber", "CONE NUMBER"};
  TextBox txtConeNumber{*this, "txtConeNumber"};
  Label lblLocation{*this, "lblLocation", "LOCATION"};
  TextBox txtLocation{*this, "txtLocation"};
  Label lblJobNumber{*this, "lblJobNumber", "JOB NUMBER"};
  TextBox txtJobNumber{*this, "txtJobNumber"};
  Label lblHoleNumber{*this, "lblHoleNumber", "HOLE NUMBER"};
  TextBox txtHoleNumber{*this, "txtHoleNumber"};
  Label lblStartDepth{*this, "lblStartDepth", "START DEPTH(m)"};
  TextBox txtStartDepth{*this, "txtStartDepth", "0"};
  Label lblWaterTable{*this, "lblWaterTable", "WATER TABLE DEPTH(m)"};
  TextBox txtWaterTable{*this, "txtWaterTable"};
  Label lblHeader{*this, "lblHeader", "HEADER"};
  TextBox txtHeader{*this, "txtHeader"};
  Label lblFooter1{*this, "lblFooter1", "FOOTER 1"};
  TextBox txtFooter1{*this, "txtFooter1"};
  Label lblFooter2{*this, "lblFooter2", "FOOTER 2"};
  TextBox txtFooter2{*this, "txtFooter2"};

  Button cmdGetGPS{*this, "cmdGetGPS", "ACQUIRE GPS (AUTO)"};
  Button cmdEnterGPS{*this, "cmdEnterGPS", "ENTER GPS (MANUAL)"};
  Label lblLattitude{*this, "lblLattitude", "GPS Latt"};
  TextBox txtLattitude{*this, "txtLattitude"};
  Label lblLongitude{*this, "lblLongitude", "GPS Long"};
  TextBox txtLongitude{*this, "txtLongitude"};
  Label lblAltitude{*this, "lblAltitude", "GPS Alt"};
  TextBox txtAltitude{*this, "txtAltitude"};

  Button Command2{*this, "Command2", "OK"};
};

inline SetupSoundingForm SetupSounding;

}  // namespace penlog
