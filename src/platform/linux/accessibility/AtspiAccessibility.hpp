// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"
#include "platform/linux/accessibility/AccessibilityBus.hpp"
#include "platform/linux/accessibility/AtspiFacts.hpp"
#include "platform/linux/accessibility/AtspiFocus.hpp"
#include "platform/linux/accessibility/AtspiNotifications.hpp"
#include "platform/linux/accessibility/AtspiTranslation.hpp"

#include <map>

namespace quillane {

/// Accessibility over the AT-SPI 2 protocol, spoken directly on the accessibility bus: each call is bounded by the
/// timeout of its element and runs only this class's code. A call sends all its questions at once and waits once.
///
/// This process itself does not answer while it waits; its focused widget is asked directly.
///
/// The facts that decide about typing into the focused element are requested as soon as it has the focus, cached for
/// half a second, and renewed in the background while they are in use, so that typing into a busy application does not
/// wait for it. Older facts remain valid for the first half second in which the application does not answer.
///
/// The children of an item that opens a submenu are read by opening it: toolkits make a submenu when it is first shown.
/// That may take 0.6 s, during which the application must keep answering. A menu without an action for that is
/// cancelled by the Escape key, which is sent once for each visible level.
class AtspiAccessibility final : public Accessibility {
public:
    explicit AtspiAccessibility(SessionBus& session);
    ~AtspiAccessibility() override;

    [[nodiscard]] AXElement application(pid_t pid) override;
    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override;
    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;
    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) override;

    [[nodiscard]] std::size_t elementsAtOnce() const override { return 32; }

    [[nodiscard]] std::vector<std::optional<std::vector<AXValue>>>
    attributesOfEach(std::span<const AXElement> elements, std::span<const std::string_view> names) override;
    [[nodiscard]] bool isAnswering(const AXElement& element) override;
    [[nodiscard]] bool isAttributeSettable(const AXElement& element, std::string_view name) override;
    bool setAttribute(const AXElement& element, std::string_view name, const AXValue& value) override;
    [[nodiscard]] std::optional<AXRect> frame(const AXElement& element) override;
    [[nodiscard]] std::optional<AXRect> frameOfText(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] std::optional<std::string> textIn(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] AXReplacement replaceText(const AXElement& element, const AXTextRange& range,
                                            const std::string& expected, const std::string& text) override;
    [[nodiscard]] std::vector<std::string> actionNames(const AXElement& element) override;
    AXActionResult performAction(const AXElement& element, std::string_view name) override;
    [[nodiscard]] std::optional<core::Subscription> observe(const AXElement& application, std::string_view name,
                                                            std::function<void(const AXElement&)> handler) override;

private:
    using Clock = BusConnection::Clock;
    class Handle;

    /// Requested facts, and when they were requested.
    struct Request {
        AtspiObject object;
        std::uint64_t change = 0; ///< of the focus at the time
        Clock::time_point begin;
        std::shared_ptr<AtspiFacts> facts;   // shared with pending answers
        Clock::time_point firstBegin{begin}; ///< of this request and earlier unanswered ones for the same facts
    };

    /// An object that was pressed, and what had the focus before.
    struct Press {
        AtspiObject object;
        AtspiObject focused;
    };

    struct Limit {
        Clock::time_point now;
        std::chrono::milliseconds timeout;
    };

    [[nodiscard]] std::optional<std::vector<AXValue>>
    read(const Handle& handle, std::span<const std::string_view> names, AtspiFactSet besides);
    [[nodiscard]] AXValue present(AtspiValue value, std::optional<std::chrono::milliseconds> timeout) const;
    [[nodiscard]] AXElement reference(const AtspiObject& object,
                                      std::optional<std::chrono::milliseconds> timeout) const;
    [[nodiscard]] static Limit limitOf(const Handle& handle);
    [[nodiscard]] std::optional<AtspiObject> objectOf(const Handle& handle) const;
    [[nodiscard]] std::shared_ptr<AtspiFacts> facts(const AtspiObject& object, AtspiFactSet which, const Limit& limit);
    [[nodiscard]] std::optional<AtspiObject> focusedObject(const std::string& application, const Limit& limit);
    void askAhead(BusConnection& bus, const AtspiFocus::Focus& focus);
    [[nodiscard]] bool isUsable(const Request& known, Clock::time_point now) const;
    [[nodiscard]] std::shared_ptr<AtspiFacts> focusFacts(BusConnection& bus, const AtspiFocus::Focus& focus,
                                                         const Limit& limit);
    void ignoreFocusOfPress(const std::string& application, const Limit& limit);
    [[nodiscard]] bool waitFor(BusConnection& bus, const Request& request, const Limit& limit);
    [[nodiscard]] bool mayAsk(BusConnection& bus, const std::string& application, const Limit& limit) const;

    // AtspiAccessibilityActions.cpp
    [[nodiscard]] std::optional<AtspiValue> compositeValue(const Handle& handle, const AtspiObject& object,
                                                           std::string_view name, const Limit& limit);
    [[nodiscard]] std::optional<AtspiObject> windowOf(AtspiObject object, const Limit& limit);
    [[nodiscard]] std::optional<AtspiObject> activeWindow(const AtspiObject& application, const Limit& limit);
    [[nodiscard]] std::vector<std::shared_ptr<AtspiFacts>>
    factsOfEach(std::span<const AtspiObject> objects, std::span<const AtspiFactSet> which, const Limit& limit);
    [[nodiscard]] std::optional<std::vector<AtspiObject>> openedSubmenu(const AtspiObject& item, Limit limit);
    [[nodiscard]] std::optional<bool> answer(BusMessage message, const Limit& limit);
    [[nodiscard]] bool ask(BusMessage message, const Limit& limit, std::function<void(DBusMessage* reply)> read);
    [[nodiscard]] std::optional<AXRect> rectangle(BusMessage message, const Limit& limit);
    [[nodiscard]] AXActionResult doAction(const AtspiObject& object, std::size_t index, const Limit& limit);
    [[nodiscard]] AXActionResult dismissMenu(const AtspiObject& menu, const Limit& limit);
    [[nodiscard]] std::optional<AtspiObject> innermostOpenMenu(const AtspiObject& menu, const Limit& limit);
    [[nodiscard]] bool select(const AtspiObject& object, const AXTextRange& range, const Limit& limit);

    // AtspiText.cpp
    [[nodiscard]] std::optional<std::string> readText(const AtspiObject& object, const AXTextRange& range,
                                                      const Limit& limit);
    [[nodiscard]] bool insertText(const AtspiObject& object, std::int64_t location, const std::string& text,
                                  const Limit& limit);
    [[nodiscard]] std::optional<std::string> toolkitOf(const std::string& application, const Limit& limit);

    AccessibilityBus bus_;
    AtspiFocus focus_;
    AtspiNotifications notifications_;
    std::optional<Press> press_;                ///< the last one
    std::optional<AtspiObject> submenu_;        ///< opened last
    std::optional<Request> known_;              ///< what is known of the focused element
    std::optional<Request> renewal_;            ///< what it has been asked and has not answered
    std::map<std::string, Request> unanswered_; ///< by bus name: the call that an application left unanswered
    core::Subscription losses_;
    core::Subscription moves_;
};

} // namespace quillane
