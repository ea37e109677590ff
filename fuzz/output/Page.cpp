// SPDX-License-Identifier: MIT
//
// The check of a page: a reader of just the markup that the tool writes.

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string_view>
#include <vector>

#include "fuzz/output/Texts.h"

namespace fuzz {
namespace {

using namespace std::string_view_literals;

const std::set<std::string_view> kElements = {
    "html",    "head",    "title",   "style",  "body",       "header", "main",    "footer",
    "section", "nav",     "div",     "span",   "p",          "h1",     "h2",      "h3",
    "h4",      "ul",      "ol",      "li",     "a",          "table",  "caption", "thead",
    "tbody",   "tr",      "th",      "td",     "dl",         "dt",     "dd",      "svg",
    "g",       "text",    "desc",    "figure", "figcaption", "strong", "em",      "code",
    "details", "summary", "article", "time",   "small",      "b",      "pre",     "aside"};
const std::set<std::string_view> kWithoutEnd = {"meta", "rect", "path", "line", "br", "hr"};

bool IsNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-';
}

class PageReader {
public:
    explicit PageReader(std::string_view page) : rest_(page) {}

    void ReadAll() {
        while (!rest_.empty()) {
            if (rest_.front() == '<')
                ReadTag();
            else if (rest_.front() == '&')
                ReadReference();
            else if (rest_.front() == '>')
                std::abort();
            else
                rest_.remove_prefix(1);
        }
        if (!open_.empty()) std::abort();
    }

private:
    void Expect(bool condition) {
        if (!condition) std::abort();
    }

    bool Skip(std::string_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    void SkipBlanks() {
        while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\n'))
            rest_.remove_prefix(1);
    }

    std::string_view TakeName() {
        const auto end = std::find_if_not(rest_.begin(), rest_.end(), IsNameByte);
        const std::string_view name =
            rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(name.size());
        return name;
    }

    void ReadTag() {
        if (Skip("<!DOCTYPE html>") || Skip("<!doctype html>")) return;
        Expect(Skip("<"));
        if (Skip("/")) {
            const std::string_view name = TakeName();
            Expect(!open_.empty() && open_.back() == name && Skip(">"));
            open_.pop_back();
            return;
        }
        const std::string_view name = TakeName();
        const bool hasEnd = kElements.contains(name);
        Expect(hasEnd || kWithoutEnd.contains(name));
        while (!Skip(">") && !Skip("/>")) ReadAttribute();
        if (!hasEnd) return;
        open_.push_back(name);
        if (name == "style") SkipStyle();
    }

    // Colours and sizes of the page; nothing of the machine.
    void SkipStyle() {
        const std::size_t end = rest_.find("</style>");
        Expect(end != std::string_view::npos);
        rest_.remove_prefix(end);
    }

    void ReadAttribute() {
        SkipBlanks();
        if (rest_.starts_with(">") || rest_.starts_with("/>")) return;
        bool isNamed = false;
        while (!rest_.empty() &&
               (IsNameByte(rest_.front()) || (rest_.front() >= 'A' && rest_.front() <= 'Z') ||
                rest_.front() == ':')) {
            rest_.remove_prefix(1);
            isNamed = true;
        }
        Expect(isNamed);
        if (!Skip("=\"")) return;
        while (!Skip("\"")) {
            Expect(!rest_.empty() && rest_.front() != '<');
            if (rest_.front() == '&')
                ReadReference();
            else
                rest_.remove_prefix(1);
        }
    }

    void ReadReference() {
        Expect(Skip("&"));
        (void)Skip("#");
        Expect(!TakeName().empty() && Skip(";"));
    }

    std::string_view rest_;
    std::vector<std::string_view> open_;
};

}  // namespace

void ExpectWellFormed(const std::string& page) {
    ExpectPrintable(page);
    PageReader(page).ReadAll();
}

}  // namespace fuzz
