// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11KeyCodes.hpp"

#include <array>
#include <utility>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillane::x11KeyCodes {

namespace {

constexpr int linuxToX = 8;
constexpr core::KeyCode firstOwnNumber = 0x100;

struct Place {
    core::KeyCode mac;
    int linuxCode;
};

constexpr auto places = std::to_array<Place>({
    {0, KEY_A},           {1, KEY_S},          {2, KEY_D},          {3, KEY_F},           {4, KEY_H},
    {5, KEY_G},           {6, KEY_Z},          {7, KEY_X},          {8, KEY_C},           {9, KEY_V},
    {10, KEY_102ND},      {11, KEY_B},         {12, KEY_Q},         {13, KEY_W},          {14, KEY_E},
    {15, KEY_R},          {16, KEY_Y},         {17, KEY_T},         {18, KEY_1},          {19, KEY_2},
    {20, KEY_3},          {21, KEY_4},         {22, KEY_6},         {23, KEY_5},          {24, KEY_EQUAL},
    {25, KEY_9},          {26, KEY_7},         {27, KEY_MINUS},     {28, KEY_8},          {29, KEY_0},
    {30, KEY_RIGHTBRACE}, {31, KEY_O},         {32, KEY_U},         {33, KEY_LEFTBRACE},  {34, KEY_I},
    {35, KEY_P},          {36, KEY_ENTER},     {37, KEY_L},         {38, KEY_J},          {39, KEY_APOSTROPHE},
    {40, KEY_K},          {41, KEY_SEMICOLON}, {42, KEY_BACKSLASH}, {43, KEY_COMMA},      {44, KEY_SLASH},
    {45, KEY_N},          {46, KEY_M},         {47, KEY_DOT},       {48, KEY_TAB},        {49, KEY_SPACE},
    {50, KEY_GRAVE},      {51, KEY_BACKSPACE}, {53, KEY_ESC},       {54, KEY_RIGHTMETA},  {55, KEY_LEFTMETA},
    {56, KEY_LEFTSHIFT},  {57, KEY_CAPSLOCK},  {58, KEY_LEFTALT},   {59, KEY_LEFTCTRL},   {60, KEY_RIGHTSHIFT},
    {61, KEY_RIGHTALT},   {62, KEY_RIGHTCTRL}, {64, KEY_F17},       {65, KEY_KPDOT},      {67, KEY_KPASTERISK},
    {69, KEY_KPPLUS},     {71, KEY_NUMLOCK},   {72, KEY_VOLUMEUP},  {73, KEY_VOLUMEDOWN}, {74, KEY_MUTE},
    {75, KEY_KPSLASH},    {76, KEY_KPENTER},   {78, KEY_KPMINUS},   {79, KEY_F18},        {80, KEY_F19},
    {81, KEY_KPEQUAL},    {82, KEY_KP0},       {83, KEY_KP1},       {84, KEY_KP2},        {85, KEY_KP3},
    {86, KEY_KP4},        {87, KEY_KP5},       {88, KEY_KP6},       {89, KEY_KP7},        {90, KEY_F20},
    {91, KEY_KP8},        {92, KEY_KP9},       {93, KEY_YEN},       {94, KEY_RO},         {95, KEY_KPJPCOMMA},
    {96, KEY_F5},         {97, KEY_F6},        {98, KEY_F7},        {99, KEY_F3},         {100, KEY_F8},
    {101, KEY_F9},        {102, KEY_HANJA},    {103, KEY_F11},      {104, KEY_HANGEUL},   {105, KEY_F13},
    {106, KEY_F16},       {107, KEY_F14},      {109, KEY_F10},      {110, KEY_COMPOSE},   {111, KEY_F12},
    {113, KEY_F15},       {114, KEY_INSERT},   {115, KEY_HOME},     {116, KEY_PAGEUP},    {117, KEY_DELETE},
    {118, KEY_F4},        {119, KEY_END},      {120, KEY_F2},       {121, KEY_PAGEDOWN},  {122, KEY_F1},
    {123, KEY_LEFT},      {124, KEY_RIGHT},    {125, KEY_DOWN},     {126, KEY_UP},
});

constexpr std::array<xcb_keycode_t, 5> leftPlaces{KEY_LEFTSHIFT + linuxToX, KEY_LEFTCTRL + linuxToX,
                                                  KEY_LEFTALT + linuxToX, KEY_LEFTMETA + linuxToX,
                                                  KEY_CAPSLOCK + linuxToX};

constexpr ModifierKey leftShift{56, core::flags::shift | core::flags::leftShift};
constexpr ModifierKey rightShift{60, core::flags::shift | core::flags::rightShift};
constexpr ModifierKey leftControl{59, core::flags::control | core::flags::leftControl};
constexpr ModifierKey rightControl{62, core::flags::control | core::flags::rightControl};
constexpr ModifierKey leftOption{58, core::flags::option | core::flags::leftOption};
constexpr ModifierKey rightOption{61, core::flags::option | core::flags::rightOption};
constexpr ModifierKey leftCommand{55, core::flags::command | core::flags::leftCommand};
constexpr ModifierKey rightCommand{54, core::flags::command | core::flags::rightCommand};
constexpr ModifierKey capsLock{57, 0};

bool isOnTheLeft(xcb_keycode_t keycode) {
    for (const auto place : leftPlaces) {
        if (place == keycode) {
            return true;
        }
    }
    return false;
}

} // namespace

core::KeyCode macKeyCode(xcb_keycode_t keycode) {
    static constexpr auto table = [] {
        std::array<core::KeyCode, 256> codes{};
        for (std::size_t i = 0; i < codes.size(); ++i) {
            codes[i] = static_cast<core::KeyCode>(firstOwnNumber + i);
        }
        for (const auto& place : places) {
            const int placeOnX = place.linuxCode + linuxToX;
            codes[static_cast<std::size_t>(placeOnX)] = place.mac;
        }
        return codes;
    }();
    return table[keycode];
}

std::optional<xcb_keycode_t> keycode(core::KeyCode macKeyCode) {
    for (const auto& place : places) {
        if (place.mac == macKeyCode) {
            return static_cast<xcb_keycode_t>(place.linuxCode + linuxToX);
        }
    }
    if (macKeyCode >= firstOwnNumber && macKeyCode < firstOwnNumber + 0x100) {
        return static_cast<xcb_keycode_t>(macKeyCode - firstOwnNumber);
    }
    return std::nullopt;
}

const ModifierKey* modifier(std::uint32_t keysym, xcb_keycode_t keycode) {
    switch (keysym) {
    case XKB_KEY_Shift_L:
        return &leftShift;
    case XKB_KEY_Shift_R:
        return &rightShift;
    case XKB_KEY_Control_L:
        return &leftControl;
    case XKB_KEY_Control_R:
        return &rightControl;
    case XKB_KEY_Alt_L:
    case XKB_KEY_Meta_L:
        return &leftOption;
    case XKB_KEY_Alt_R:
    case XKB_KEY_Meta_R:
        return &rightOption;
    case XKB_KEY_ISO_Level3_Shift:
    case XKB_KEY_Mode_switch:
        return isOnTheLeft(keycode) ? &leftOption : &rightOption;
    case XKB_KEY_Super_L:
    case XKB_KEY_Hyper_L:
        return &leftCommand;
    case XKB_KEY_Super_R:
    case XKB_KEY_Hyper_R:
        return &rightCommand;
    case XKB_KEY_Caps_Lock:
        return &capsLock;
    default:
        return nullptr;
    }
}

} // namespace quillane::x11KeyCodes
