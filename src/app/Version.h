#pragma once

namespace tavocal {

constexpr const char* kVersionText = "3.1.0.4596";

}  // namespace tavocal
