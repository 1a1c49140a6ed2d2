// All settings that need no file at a fixed path, one as the other (support/settings_tests.h).
#include "support/settings_tests.h"

bool xasIsTestedHere(const XasExpectedSetting &setting)
{
    return !setting.hasFixedPaths;
}
