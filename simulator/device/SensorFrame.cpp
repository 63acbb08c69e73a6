#include "simulator/device/SensorFrame.h"

#include <array>

namespace tavocal::simulator {

namespace {

struct Mounting {
    std::string_view formFactor;
    std::string_view hinge;
    Mat3 frame;
};

constexpr Mat3 kAboutX{{Vec3{1, 0, 0}, Vec3{0, -1, 0}, Vec3{0, 0, -1}}};
constexpr Mat3 kAboutY{{Vec3{-1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, -1}}};
constexpr Mat3 kLeft{{Vec3{0, -1, 0}, Vec3{-1, 0, 0}, Vec3{0, 0, -1}}};
constexpr Mat3 kRight{{Vec3{0, 1, 0}, Vec3{1, 0, 0}, Vec3{0, 0, -1}}};

constexpr std::array<Mounting, 8> kMountings = {{
    {"2IN1", "BOTTOM", kAboutX},
    {"2IN1", "TOP", kAboutY},
    {"2IN1", "LEFT", kLeft},
    {"2IN1", "RIGHT", kRight},
    {"MID", "BOTTOM", kAboutX},
    {"MID", "TOP", kAboutX},
    {"MID", "LEFT", kAboutY},
    {"MID", "RIGHT", kAboutY},
}};

}  // namespace

Mat3 secondaryFrame(std::string_view formFactor, std::string_view hinge) {
    for (const Mounting& mounting : kMountings) {
        if (mounting.formFactor == formFactor && mounting.hinge == hinge) {
            return mounting.frame;
        }
    }
    return kAboutX;
}

}  // namespace tavocal::simulator
