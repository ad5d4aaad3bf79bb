// What happens when the window server ends, or ends the toolkit's connection, while the program runs.
#pragma once

namespace kr::platform {

// From now on unfinished work (platform/UnfinishedWork.h) is finished first: without a window, which cannot
// be had again, and without the main thread, which could only draw. The program then ends with status 1, as
// it does at once without this. After the toolkit has connected; main thread.
void finishWorkWithoutWindowServer();

}  // namespace kr::platform
