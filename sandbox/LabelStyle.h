// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>

namespace quorvelkit::sandbox {

/// Adds the layers that write the features of mapLabels(), from the source "labels". The last
/// layers are placed first, and keep others away.
void addLabelLayers(ValueArray& layers);

}  // namespace quorvelkit::sandbox
