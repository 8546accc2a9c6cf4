#include <VelmarCoreUI/VLXVersion.h>

const double VelmarCoreUIVersionNumber = VLX_VERSION_NUMBER;
const char* const VelmarCoreUIVersionString = VLX_VERSION_STRING;
