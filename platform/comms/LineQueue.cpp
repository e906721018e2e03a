#include "platform/comms/LineQueue.h"

namespace ombra {

void LineQueue::PushLocked(std::string&& line) {
    if (lines_.size() >= capacity_) {
        lines_.pop_front();
        ++stats_.overflow;
    }
    lines_.push_back(std::move(line));
    ++stats_.lines;
}

void LineQueue::Append(std::string_view bytes) {
    std::lock_guard<std::mutex> lock(mu_);
    while (!bytes.empty()) {
        size_t lf = bytes.find('\n');
        std::string_view piece = lf == std::string_view::npos ? bytes : bytes.substr(0, lf + 1);
        bytes.remove_prefix(piece.size());
        if (!discarding_) {
            if (partial_.size() + piece.size() > MaxLine) {
                partial_.clear();
                ++stats_.overlong;
                discarding_ = true;
            } else {
                partial_.append(piece);
            }
        }
        if (lf != std::string_view::npos) {
            if (!discarding_) PushLocked(std::move(partial_));
            partial_.clear();
            discarding_ = false;
        }
    }
}

void LineQueue::EndPartial() {
    std::lock_guard<std::mutex> lock(mu_);
    if (!discarding_ && !partial_.empty()) PushLocked(std::move(partial_));
    partial_.clear();
    discarding_ = false;
}

void LineQueue::DropPartial() {
    std::lock_guard<std::mutex> lock(mu_);
    partial_.clear();
    discarding_ = false;
}

bool LineQueue::Pop(std::string& line) {
    std::lock_guard<std::mutex> lock(mu_);
    if (lines_.empty()) return false;
    line = std::move(lines_.front());
    lines_.pop_front();
    return true;
}

void LineQueue::Clear() {
    std::lock_guard<std::mutex> lock(mu_);
    lines_.clear();
    partial_.clear();
    discarding_ = false;
}

size_t LineQueue::Size() const {
    std::lock_guard<std::mutex> lock(mu_);
    return lines_.size();
}

LineStats LineQueue::Stats() const {
    std::lock_guard<std::mutex> lock(mu_);
    return stats_;
}

}  // namespace ombra
