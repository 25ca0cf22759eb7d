// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiTranslation.hpp"

#include <algorithm>
#include <array>

namespace quillane {

namespace {

/// A role of the protocol, by its number (AtspiRole), and its macOS name (NSAccessibilityConstants.h).
struct Role {
    std::uint32_t number;
    std::string_view role;
    std::string_view subrole = {};
    std::string_view roleWhenEditable = {}; ///< of an object that is edited as a whole; empty means the same
};

constexpr std::string_view textArea = "AXTextArea";
constexpr std::string_view textField = "AXTextField";

/// Roles that are not listed are "AXUnknown", or a text area when they can be edited.
constexpr std::array roles{
    Role{2, "AXWindow", "AXDialog"},                     // alert
    Role{7, "AXCheckBox"},                               // check box
    Role{8, "AXMenuItem"},                               // check menu item
    Role{11, "AXPopUpButton", {}, "AXComboBox"},         // combo box
    Role{16, "AXWindow", "AXDialog"},                    // dialog
    Role{19, "AXWindow", "AXDialog"},                    // file chooser
    Role{20, "AXGroup", {}, textArea},                   // filler
    Role{23, "AXWindow", "AXStandardWindow"},            // frame
    Role{26, "AXImage"},                                 // icon
    Role{27, "AXImage"},                                 // image
    Role{28, "AXGroup"},                                 // internal frame
    Role{29, "AXStaticText", {}, textArea},              // label
    Role{31, "AXList"},                                  // list
    Role{32, "AXGroup", {}, textArea},                   // list item
    Role{33, "AXMenu"},                                  // menu
    Role{34, "AXMenuBar"},                               // menu bar
    Role{35, "AXMenuItem"},                              // menu item
    Role{37, "AXRadioButton", "AXTabButton"},            // page tab
    Role{38, "AXTabGroup"},                              // page tab list
    Role{39, "AXGroup", {}, textArea},                   // panel
    Role{40, textField, "AXSecureTextField"},            // password text
    Role{41, "AXMenu"},                                  // popup menu
    Role{42, "AXProgressIndicator"},                     // progress bar
    Role{43, "AXButton"},                                // push button
    Role{44, "AXRadioButton"},                           // radio button
    Role{45, "AXMenuItem"},                              // radio menu item
    Role{48, "AXScrollBar"},                             // scroll bar
    Role{49, "AXScrollArea"},                            // scroll pane
    Role{50, "AXSplitter"},                              // separator
    Role{51, "AXSlider"},                                // slider
    Role{52, "AXIncrementor", {}, textField},            // spin button
    Role{53, "AXSplitGroup"},                            // split pane
    Role{55, "AXTable"},                                 // table
    Role{56, "AXCell", {}, textArea},                    // table cell
    Role{59, "AXMenuItem"},                              // tear-off menu item
    Role{60, textArea, "AXTerminal"},                    // terminal; macOS has no name for it
    Role{61, textField},                                 // text
    Role{62, "AXCheckBox", "AXToggleButton"},            // toggle button
    Role{63, "AXToolbar"},                               // tool bar
    Role{65, "AXOutline"},                               // tree
    Role{66, "AXOutline"},                               // tree table
    Role{68, "AXGroup"},                                 // viewport
    Role{69, "AXWindow"},                                // window
    Role{73, "AXGroup", {}, textArea},                   // paragraph
    Role{75, "AXApplication"},                           // application
    Role{77, textField},                                 // edit bar
    Role{79, textField},                                 // entry
    Role{82, "AXGroup", {}, textArea},                   // document frame
    Role{83, "AXHeading", {}, textArea},                 // heading
    Role{84, "AXGroup", {}, textArea},                   // page
    Role{85, "AXGroup", {}, textArea},                   // section
    Role{87, "AXGroup", {}, textArea},                   // form
    Role{88, "AXLink"},                                  // link
    Role{90, "AXRow"},                                   // table row
    Role{91, "AXRow", "AXOutlineRow"},                   // tree item
    Role{94, "AXGroup", {}, textArea},                   // text document
    Role{95, "AXWebArea"},                               // web document
    Role{96, "AXGroup", {}, textArea},                   // e-mail document
    Role{98, "AXList"},                                  // list box
    Role{99, "AXGroup", {}, textArea},                   // grouping
    Role{105, "AXGroup", {}, textArea},                  // block quote
    Role{109, "AXGroup", "AXDocumentArticle", textArea}, // article
    Role{116, "AXStaticText", {}, textArea},             // static text
    Role{129, "AXMenuButton"},                           // push button that opens a menu
};

constexpr std::uint32_t terminal = 60;

const Role* findRole(std::uint32_t number) {
    const auto* found = std::ranges::lower_bound(roles, number, {}, &Role::number);
    return found != roles.end() && found->number == number ? found : nullptr;
}

/// A terminal's text belongs to the program that runs in it: it cannot be set, and a password prompt cannot be
/// recognised.
bool isEditableText(const AtspiFacts& facts) {
    return facts.is(AtspiState::editable) && !facts.is(AtspiState::readOnly) && facts.role != terminal &&
           (facts.has(AtspiInterface::editableText) || facts.has(AtspiInterface::text));
}

AtspiValue text(std::string_view value) {
    return value.empty() ? AtspiValue() : AtspiValue(std::string(value));
}

/// A menu is an element of the tree only while it is open. The upright menu bar is the frame that Chromium draws around
/// a menu.
std::optional<std::string_view> menuRoleOf(const AtspiFacts& facts, std::string_view role) {
    if (role == "AXMenu" && !facts.is(AtspiState::showing)) {
        return "AXUnknown";
    }
    if (role == "AXMenuBar" && facts.is(AtspiState::vertical)) {
        return "AXGroup";
    }
    return std::nullopt;
}

AtspiValue roleOf(const AtspiFacts& facts) {
    const auto* found = findRole(facts.role);
    const bool editable = facts.is(AtspiState::editable);
    if (const auto menuRole = found != nullptr ? menuRoleOf(facts, found->role) : std::nullopt) {
        return text(*menuRole);
    }
    if (found == nullptr) {
        return text(editable ? textArea : "AXUnknown");
    }
    if (found->role == textField && found->subrole.empty() && facts.is(AtspiState::multiLine)) {
        return text(textArea);
    }
    return text(editable && !found->roleWhenEditable.empty() ? found->roleWhenEditable : found->role);
}

AtspiValue subroleOf(const AtspiFacts& facts) {
    const auto* found = findRole(facts.role);
    return found != nullptr ? text(found->subrole) : AtspiValue();
}

AtspiValue selectedRangeOf(const AtspiFacts& facts) {
    if (facts.knows(AtspiFact::selectionCount) && facts.selectionCount > 0 && facts.knows(AtspiFact::selection) &&
        facts.selectionEnd > facts.selectionStart && facts.selectionStart >= 0) {
        return AXTextRange{facts.selectionStart, facts.selectionEnd - facts.selectionStart};
    }
    return facts.knows(AtspiFact::caret) && facts.caret >= 0 ? AtspiValue(AXTextRange{facts.caret, 0}) : AtspiValue();
}

constexpr std::array attributes{
    AtspiAttribute{"AXRole", AtspiFact::role | AtspiFact::states, roleOf},
    AtspiAttribute{"AXSubrole", AtspiFactSet{} | AtspiFact::role, subroleOf},
    AtspiAttribute{"AXEnabled", AtspiFactSet{} | AtspiFact::states,
                   [](const AtspiFacts& facts) {
                       return AtspiValue(facts.is(AtspiState::enabled) && facts.is(AtspiState::sensitive));
                   }},
    AtspiAttribute{"AXFocused", AtspiFactSet{} | AtspiFact::states,
                   [](const AtspiFacts& facts) { return AtspiValue(facts.is(AtspiState::focused)); }},
    AtspiAttribute{"AXExpanded", AtspiFactSet{} | AtspiFact::states,
                   [](const AtspiFacts& facts) {
                       return facts.is(AtspiState::expandable) ? AtspiValue(facts.is(AtspiState::expanded))
                                                               : AtspiValue();
                   }},
    AtspiAttribute{"AXTitle", AtspiFactSet{} | AtspiFact::name,
                   [](const AtspiFacts& facts) { return text(facts.name); }},
    AtspiAttribute{"AXDescription", AtspiFactSet{} | AtspiFact::description,
                   [](const AtspiFacts& facts) { return text(facts.description); }},
    AtspiAttribute{"AXIdentifier", AtspiFactSet{} | AtspiFact::identifier,
                   [](const AtspiFacts& facts) { return text(facts.identifier); }},
    AtspiAttribute{"AXParent", AtspiFactSet{} | AtspiFact::parent,
                   [](const AtspiFacts& facts) { return facts.parent ? AtspiValue(*facts.parent) : AtspiValue(); }},
    AtspiAttribute{"AXChildren", AtspiFactSet{} | AtspiFact::children,
                   [](const AtspiFacts& facts) {
                       const bool refused = (facts.refused & static_cast<unsigned>(AtspiFact::children)) != 0;
                       return refused ? AtspiValue() : AtspiValue(facts.children);
                   }},
    AtspiAttribute{"AXSelectedTextRange", AtspiFact::caret | AtspiFact::selectionCount | AtspiFact::selection,
                   selectedRangeOf},
    AtspiAttribute{"AXNumberOfCharacters", AtspiFactSet{} | AtspiFact::characterCount,
                   [](const AtspiFacts& facts) {
                       return facts.characterCount >= 0 ? AtspiValue(std::int64_t{facts.characterCount}) : AtspiValue();
                   }},
    AtspiAttribute{"AXURL", AtspiFactSet{} | AtspiFact::address,
                   [](const AtspiFacts& facts) { return text(facts.address); }},
};

constexpr std::array settables{
    AtspiSettable{"AXValue", editingFacts, isEditableText},
    AtspiSettable{"AXSelectedText", editingFacts, isEditableText},
    AtspiSettable{"AXSelectedTextRange", editingFacts,
                  [](const AtspiFacts& facts) { return facts.has(AtspiInterface::text); }},
};

/// The toolkits' names of the actions, in lower-case letters and nothing else.
struct ActionName {
    std::string_view action;
    std::string_view atspi;
};

constexpr std::array actionNames{
    ActionName{"AXShowMenu", "showcontextmenu"}, // Chromium
    ActionName{"AXShowMenu", "showmenu"},        // Qt
    ActionName{"AXShowMenu", "menu"},            // GTK, "menu.popup"
    ActionName{"AXShowMenu", "menupopup"},
    ActionName{"AXCancel", "cancel"},
    ActionName{"AXPress", "press"},
    ActionName{"AXPress", "click"},
    ActionName{"AXPress", "activate"},
    ActionName{"AXPress", "toggle"},
    ActionName{"AXPress", "check"},
    ActionName{"AXPress", "uncheck"}, // Chromium, also of a command that stays as it is
    ActionName{"AXPress", "select"},
    ActionName{"AXPress", "open"},
    ActionName{"AXPress", "dodefault"},
};

std::string smallLetters(std::string_view name) {
    std::string result;
    for (const char c : name) {
        const char small = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if (small >= 'a' && small <= 'z') {
            result += small;
        }
    }
    return result;
}

template <typename Row, std::size_t Count>
const Row* find(const std::array<Row, Count>& table, std::string_view name) {
    const auto* found = std::ranges::find(table, name, &Row::name);
    return found != table.end() ? found : nullptr;
}

static_assert(std::ranges::is_sorted(roles, {}, &Role::number));

} // namespace

const AtspiAttribute* findAttribute(std::string_view name) {
    return find(attributes, name);
}

const AtspiSettable* findSettable(std::string_view name) {
    return find(settables, name);
}

bool isMenu(const AtspiFacts& facts) {
    const auto* found = findRole(facts.role);
    return found != nullptr && found->role == "AXMenu";
}

bool isMenuItem(const AtspiFacts& facts) {
    const auto* found = findRole(facts.role);
    return found != nullptr && found->role == "AXMenuItem";
}

bool saysThatItOpens(const AtspiFacts& facts) {
    return facts.is(AtspiState::hasPopup) || facts.is(AtspiState::expandable);
}

std::optional<std::size_t> atspiActionIndex(const AtspiFacts& facts, std::string_view name) {
    for (const auto& row : actionNames) {
        if (row.action == name) {
            const auto* found = std::ranges::find(facts.actions, row.atspi, smallLetters);
            if (found != facts.actions.end()) {
                return static_cast<std::size_t>(found - facts.actions.begin());
            }
        }
    }
    return std::nullopt;
}

std::vector<std::string> actionNamesOf(const AtspiFacts& facts) {
    std::vector<std::string> names;
    for (const auto& row : actionNames) {
        if (std::ranges::find(names, row.action) == names.end() && atspiActionIndex(facts, row.action)) {
            names.emplace_back(row.action);
        }
    }
    return names;
}

} // namespace quillane
