// What the library of app/windowlibrary.h exports.
#include "app/windowbatch.h"
#include "app/windowlibrary.h"
#include "app/windowrun.h"

extern "C" const app::WindowCalls quenlinWindowCalls = {app::CanOpenWindows, app::RunInWindows,
                                                        app::RunBatchInWindows};
