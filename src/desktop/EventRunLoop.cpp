#include "desktop/EventRunLoop.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <ctime>
#include <limits>
#include <optional>

namespace quibbits {
namespace {

Seconds seconds(const timespec& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

Seconds clockTime(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return seconds(time);
}

constexpr Seconds longestSleep = 1e6;

/// Waits with the kernel's finest timeout; below Linux 5.11 whole milliseconds must do.
int waitForEvents(int epoll, epoll_event* events, int most, std::optional<Seconds> longest) {
    if (!longest) return epoll_wait(epoll, events, most, -1);
    const Seconds wait = std::clamp(*longest, 0.0, longestSleep);
    const auto whole = std::floor(wait);
    const timespec timeout{static_cast<time_t>(whole),
                           static_cast<long>(std::min((wait - whole) * 1e9, 999'999'999.0))};
    const int count = epoll_pwait2(epoll, events, most, &timeout, nullptr);
    if (count >= 0 || errno != ENOSYS) return count;
    return epoll_wait(epoll, events, most, static_cast<int>(std::min(std::ceil(wait * 1000), 1e9)));
}

void drain(int descriptor) {
    std::array<char, 1024> bytes;
    while (read(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) {
    }
}

}  // namespace

EventRunLoop::EventRunLoop()
    : epoll_(epoll_create1(EPOLL_CLOEXEC)), bell_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    bellWatch_ = watch(bell_.get(), [this] { drain(bell_.get()); });
}

EventRunLoop::~EventRunLoop() {
    dropJobs();
}

void EventRunLoop::dropJobs() {
    takePosted();
    while (jobs_.size() > 0) {
        jobs_.clear();
        takePosted();
    }
}

Instant EventRunLoop::now() const {
    return clockTime(CLOCK_MONOTONIC);
}

Date EventRunLoop::date() const {
    return {clockTime(CLOCK_REALTIME)};
}

LocalTime EventRunLoop::localTime(Date date) const {
    tzset();  // the user may have travelled
    date = std::clamp(date, Date::distantPast(), Date::distantFuture());
    const auto time = static_cast<time_t>(std::floor(date.secondsSince1970));
    tm local{};
    if (!localtime_r(&time, &local)) return {};
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min};
}

void EventRunLoop::post(Job job) {
    {
        const std::lock_guard held(postedLock_);
        posted_.push_back(std::move(job));
        if (posted_.size() > 1) return;  // the bell has rung already
    }
    if (std::this_thread::get_id() != thread_) eventfd_write(bell_.get(), 1);
}

void EventRunLoop::quit() {
    quitting_ = true;
    eventfd_write(bell_.get(), 1);
}

void EventRunLoop::quitOnSignals() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&ending, number);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    signals_ = FileDescriptor(signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK));
    signalWatch_ = watch(signals_.get(), [this] {
        drain(signals_.get());
        quit();
    });
}

Subscription EventRunLoop::watch(int descriptor, Job ready) {
    return watchFor(descriptor, EPOLLIN | EPOLLPRI, std::move(ready));
}

Subscription EventRunLoop::watchWritable(int descriptor, Job ready) {
    return watchFor(descriptor, EPOLLOUT, std::move(ready));
}

Subscription EventRunLoop::watchUrgent(int descriptor, Job ready) {
    return watchFor(descriptor, EPOLLPRI, std::move(ready));
}

Subscription EventRunLoop::watchFor(int descriptor, std::uint32_t events, Job ready) {
    const auto id = ++lastWatch_;
    watches_[id] = std::make_shared<Watch>(Watch{descriptor, std::move(ready)});
    epoll_event event{.events = events, .data = {.u64 = id}};
    epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &event);
    return Subscription([this, id, descriptor] {
        epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, descriptor, nullptr);
        watches_.erase(id);
    });
}

Subscription EventRunLoop::beforeWaiting(Job job) {
    return aboutToWait_.subscribe(std::move(job));
}

std::uint64_t EventRunLoop::schedule(Schedule when, Job job) {
    return jobs_.add({.due = std::max(when.due, now()),
                      .interval = when.interval,
                      .tolerance = when.tolerance,
                      .job = std::move(job)});
}

void EventRunLoop::takePosted() {
    std::vector<Job> jobs;
    {
        const std::lock_guard held(postedLock_);
        jobs.swap(posted_);
    }
    for (auto& job : jobs) schedule({.due = now()}, std::move(job));
}

void EventRunLoop::runDue() {
    takePosted();
    const Instant until = now();  // what a job adds waits for the next turn
    for (auto due = jobs_.nextDue(); !quitting_ && due && *due <= until; due = jobs_.nextDue()) {
        jobs_.runFirst(*this);
    }
}

void EventRunLoop::turn(Seconds longestWait) {
    aboutToWait_.emit();
    waitFor(longestWait);
    runDue();
}

void EventRunLoop::waitFor(Seconds longest) {
    {
        const std::lock_guard held(postedLock_);
        if (!posted_.empty()) longest = 0;
    }
    std::optional<Seconds> wait;
    if (const auto by = jobs_.wakeBy()) wait = *by - now();
    if (std::isfinite(longest)) wait = wait ? std::min(*wait, longest) : longest;

    std::array<epoll_event, 16> events;
    const int count =
        waitForEvents(epoll_.get(), events.data(), static_cast<int>(events.size()), wait);
    ++wakes_;
    for (int i = 0; i < count; ++i) {
        const std::uint64_t id = events[static_cast<std::size_t>(i)].data.u64;  // it lies unaligned
        const auto found = watches_.find(id);
        if (found == watches_.end()) continue;  // its watch ended in this round
        const auto watch = found->second;
        watch->ready();
    }
}

void EventRunLoop::run() {
    while (!quitting_) turn(std::numeric_limits<Seconds>::infinity());
    quitting_ = false;
}

}  // namespace quibbits
