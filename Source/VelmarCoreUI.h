#pragma once

// Umbrella header: everything a host needs.
#include "VLXVersion.h"
