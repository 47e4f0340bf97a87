#pragma once
// The offers of the Downloads guard that nobody has answered yet, kept in the defaults: their
// notifications are taken back when the program ends, so the next one has to make them again.

#include <string>
#include <vector>

#include "platform/UserDefaults.h"

namespace quibbits {

/// Files that may go, and why.
struct DownloadsFind {
    std::vector<std::string> paths;
    std::string title;
    std::string why;
    bool operator==(const DownloadsFind&) const = default;
};

class OpenOffers {
public:
    struct Offer {
        DownloadsFind find;
        std::vector<std::string> prints;  // of each file, as it was when it was offered
    };
    explicit OpenOffers(UserDefaults& defaults);

    const std::vector<Offer>& all() const { return offers_; }
    /// Beyond some hundred files the oldest offers are forgotten.
    void add(const Offer& offer);
    /// Ends every offer that holds one of the files.
    void close(const std::vector<std::string>& paths);

private:
    void save();

    UserDefaults& defaults_;
    std::vector<Offer> offers_;
};

}  // namespace quibbits
