#pragma once

// The key constants live with the records that they belong to, below every folder that reads them; hosts find them
// here, beside the protocols.
#include "model/KeyConstants.h"  // IWYU pragma: export
