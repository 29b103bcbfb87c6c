// The scalars that tie the subsystems together: who runs what, where its files lie.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace penlog {

struct SessionState {
  std::string DataDirectory;
  std::int16_t CommaDecimal = 0;             ///< 1 if the locale reads "2.1" as other than 2.1
  float ScreenScaleX = 1;                    ///< screen width over that of the design, 800
  float ScreenScaleY = 1;                    ///< screen height over that of the design, 600
  std::int16_t CalibrationMode = 0;          ///< -1 the console serves a calibration check
  std::int16_t CalibrationPlaybackOnly = 0;  ///< -1 no cone found; playback of a check alone
  std::int16_t ReadingsAveraged = 4;         ///< samples in the running average, 1 to 10
  std::int16_t DissipationRestartCount = 0;
  std::string LastSoundingCompletedMessage;
  std::string ConeNotDetectedMessage;

  // The ports as found at the press of cmdStart.
  std::int16_t StartConePort = 0;
  std::int16_t StartTruckPort = 0;
  std::int16_t StartASCIIPort = 0;
  std::int16_t StartVideoPort = 0;

  // The sounding's header, as accepted on its setup screen.
  std::string LastDirectory;
  std::string LastDrive;
  std::string SoundingName;
  std::string OperatorName;
  std::string ConeNumber;
  std::string SoundingLocation;
  std::string JobNumber;
  std::string HoleNumber;
  std::string SoundingDateTime;  ///< "yyyy-mm-dd hh:mm:ss"
  std::string HeaderNote;
  std::string FooterNote1;
  std::string FooterNote2;
  std::string GPSPosition;
  float StartDepth = 0;  ///< m; negated in the elevation format
  float WaterTable = 0;  ///< m; negated in the elevation format

  /// 0 "TemporaryData.txt", 1 .cpt, 2 .dis, 3 .smc, 4 .tim, 5 .res, 6 .mp4
  std::array<std::string, 7> SoundingFiles;

  // Resume of an unfinished sounding.
  std::string ResumeConeId;             ///< empty: a new sounding
  float ResumeDepthStatus = 0;          ///< 0 resume at once, 1.0 wait for the resume depth
  float ResumeTargetDepth = 0;          ///< m; the depth at which to carry on
  std::string ResumeCompanyName;        ///< as in the header of the sounding to resume
  float DepthStepOfSettings = 0;        ///< m; while a resume goes on with another step, else 0
  std::int16_t HasDissipationFile = 0;  ///< -1 the sounding has a `.dis` file already
  std::int16_t HasSeismicFile = 0;      ///< -1 the sounding has a `.smc` file already
};

inline SessionState session;

}  // namespace penlog
