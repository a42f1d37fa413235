// The texts that the whole suite agrees on.
//
// They are there before anything that a library does for its callers, also for what runs before
// main, and last until it is unloaded. Any thread.
#pragma once

#include "RVString.h"

namespace rv {

// Under HKEY_LOCAL_MACHINE.
inline constexpr const char* kSuiteKey = "Software\\ZOR Asset Care\\ZOR Plant Workbench";
// The section of an application's settings, and the names of values in it.
inline constexpr const char* kApplicationSettings = "Application Settings";
inline const RVString kApplicationPath("AppPath");
inline const RVString kLanguagePath("LriPath");
inline const RVString kApplicationTitle("AppTitle");
inline const RVString kDatabaseClassId("DbClassId");
inline const RVString kUploadServer("UploadServer");
inline const RVString kUploadFilePath("UploadFilePath");

// The file of the master settings, without its folder.
inline const RVString kMasterSettingsFile("zorMasterSettings.xml");
// Below the folder for the data of all users.
inline const RVString kApplicationDataFolder("\\ZOR\\Trellis Workbench");

// Variables of the environment, as they stand in paths; the two of the temporary folder begin
// without a sign.
inline const RVString kApplicationDataToken("%APPDATA%");
inline const RVString kTemporaryToken("TEMP%");
inline const RVString kSecondTemporaryToken("TMP%");

// Settings of developers.
inline constexpr const char* kDeveloperErrorMessage = "DeveloperErrorsMsg";
inline constexpr const char* kDeveloperErrors = "DeveloperErrors";
inline constexpr const char* kDeveloperProfiler = "DevProfiler";
inline constexpr const char* kTraceMasks = "TraceMasks";
inline constexpr const char* kTracePath = "TracePath";

// What applications show of themselves.
inline const RVString kSuiteVersion("9.0.1033.1");
inline const RVString kSuiteYear("2016");
// What stands for them in a text.
inline const RVString kVersionPlaceholder("%%VERSION%%");
inline const RVString kCopyrightPlaceholder("%%COPYRIGHT%%");

}  // namespace rv
