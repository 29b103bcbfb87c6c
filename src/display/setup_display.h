// The display setup: which channels are recorded, which are graphed, and where the filter of a
// single pore pressure transducer sits. Its DONE starts the console.
#pragma once

namespace penlog {

void SetupDisplay_Load();
void SetupDisplay_chkRecordChan_Click(int channel);
void SetupDisplay_chkGraphChan_Click(int channel);
void SetupDisplay_cmdClearSelection_Click();
void SetupDisplay_cmdU1PPFilter_Click();
void SetupDisplay_cmdU2PPFilter_Click();
void SetupDisplay_cmdDoNotRecordPP_Click();
void SetupDisplay_cmdPrevious_Click();
/// Saves the choices, shows the console and runs its loop, which does not return.
void SetupDisplay_cmdDone_Click();

}  // namespace penlog
