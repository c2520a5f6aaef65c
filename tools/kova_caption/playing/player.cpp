// SPDX-License-Identifier: MIT
#include "playing/player.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "base/timestamp.h"
#include "drawing/remarks.h"
#include "drawing/stage.h"
#include "playing/keys.h"
#include "terminal/report.h"

namespace caption
{

namespace
{

using namespace std::chrono_literals;
using Milliseconds = std::chrono::duration<double, std::milli>;

// Which moment of the source it is.
class Clock
{
public:
    explicit Clock(double speed) : speed_(speed)
    {
    }

    void Set(double position)
    {
        position_ = position;
        since_ = std::chrono::steady_clock::now();
    }
    void PauseOrGoOn()
    {
        Set(Position());
        paused_ = !paused_;
    }
    bool IsPaused() const
    {
        return paused_;
    }
    double Position() const
    {
        const Milliseconds passed = std::chrono::steady_clock::now() - since_;
        return position_ + (paused_ ? 0 : passed.count() * speed_);
    }
    // Not before it was set, and never if it stands still.
    SteadyTime When(std::int64_t time) const
    {
        const Milliseconds left((double(time) - position_) / speed_);

        if (left.count() <= 0) return since_;
        if (paused_) return SteadyTime::max();
        return since_ + std::chrono::duration_cast<SteadyTime::duration>(left);
    }

private:
    const double speed_;
    double position_ = 0; // milliseconds
    SteadyTime since_;
    bool paused_ = false;
};

// What is seen becomes something else.
struct Change {
    std::int64_t time;
    const Screen *screen; // null: nothing is shown any more
};

class Player
{
public:
    Player(const std::vector<Cue> &cues, const Playback &playback, const Options &options, std::FILE *out);

    void Run();
    void PrintStatistics() const;

private:
    void Seek(std::int64_t time);
    void Prepare();
    void Draw();
    void Show();
    void List(const std::vector<std::size_t> &cues);
    bool Obey(Key key);
    std::optional<std::size_t> Beside(Key direction) const;

    const std::vector<Cue> &cues_;
    const std::vector<Screen> screens_;
    std::vector<Change> changes_;
    const Playback playback_;
    std::FILE *const out_;
    const bool limited_; // in how often it flips
    const bool ahead_;   // the next change is drawn before its time, unseen
    Stage stage_;
    Keys keys_;
    Clock clock_;
    Remarks remarks_;
    std::size_t next_ = 0; // of the changes
    Plan plan_;            // of the next change
    SteadyTime flipped_;
    std::vector<std::size_t> shown_; // cues
    std::size_t count_ = 0;          // of the cues shown so far
    std::size_t missed_ = 0;         // changes to something that was to be gone again before it was drawn
    std::vector<double> lateness_;   // milliseconds
};

} // namespace

static std::vector<Change> Changes(const std::vector<Screen> &screens)
{
    std::vector<Change> changes;

    for (const Screen &screen : screens) {
        if (!changes.empty() && changes.back().time == screen.start) changes.pop_back();
        changes.push_back({screen.start, &screen});
        changes.push_back({screen.end, nullptr});
    }
    return changes;
}

Player::Player(const std::vector<Cue> &cues, const Playback &playback, const Options &options, std::FILE *out)
    : cues_(cues), screens_(Screens(cues)), changes_(Changes(screens_)), playback_(playback), out_(out),
      limited_(options.layer != KOVA_GRAPHIC_LAYER1), ahead_(limited_ && options.mode != ColorMode::INDEX),
      stage_(options), keys_(!options.headless), clock_(playback.speed)
{
    if (changes_.empty() || changes_.back().time <= playback.start) {
        throw Failure("--start " + Timestamp(playback.start) +
                      ": nothing is shown from there on; the last caption " + "ends at " +
                      Timestamp(changes_.empty() ? 0 : changes_.back().time));
    }
}

void Player::Run()
{
    do {
        Seek(playback_.start);
        while (next_ < changes_.size()) {
            const std::optional<Key> key = keys_.Wait(clock_.When(changes_[next_].time));
            if (!key) Show();
            if (key && !Obey(*key)) return;
        }
    } while (playback_.loop);
}

// What is to be seen at that time is shown next, at once.
void Player::Seek(std::int64_t time)
{
    const auto after = std::find_if(changes_.begin(), changes_.end(),
                                    [time](const Change &change) { return change.time > time; });

    next_ = std::size_t(std::max<std::ptrdiff_t>(after - changes_.begin() - 1, 0));
    shown_.clear();
    Prepare();
    clock_.Set(double(time));
}

// All that can be done before the time of the next change. Layers 2 and 3 have a back buffer, in which its
// picture waits; the window of layer 1 would show it string by string. Index mode loads the colours of a
// picture as it draws, and those that are seen would change.
void Player::Prepare()
{
    if (next_ == changes_.size()) return;
    std::vector<const Cue *> cues;
    if (changes_[next_].screen) {
        for (const std::size_t cue : changes_[next_].screen->cues) cues.push_back(&cues_[cue]);
    }
    plan_ = stage_.renderer.LayOut(cues);
    for (const std::string &remark : remarks_.On(plan_.drawn, stage_.fonts)) {
        Report("at " + Timestamp(changes_[next_].time) + ": " + remark);
    }
    if (ahead_) Draw();
}

void Player::Draw()
{
    stage_.display.Hold();
    stage_.display.Clear();
    stage_.renderer.Draw(plan_);
}

void Player::Show()
{
    const SteadyTime now = std::chrono::steady_clock::now();
    const std::size_t due = next_;
    while (next_ + 1 < changes_.size() && clock_.When(changes_[next_ + 1].time) <= now) {
        missed_ += changes_[next_++].screen != nullptr;
    }
    if (next_ != due) Prepare();

    if (!ahead_) Draw();
    // Of two flips within 16 ms the library would make the second later, while the next picture is drawn.
    if (limited_) std::this_thread::sleep_until(flipped_ + 17ms);
    stage_.display.Release();
    flipped_ = std::chrono::steady_clock::now();

    const Change &change = changes_[next_++];
    if (change.screen) lateness_.push_back(Milliseconds(flipped_ - clock_.When(change.time)).count());
    List(change.screen ? change.screen->cues : std::vector<std::size_t>());
    Prepare();
}

// Those that were not there before.
void Player::List(const std::vector<std::size_t> &cues)
{
    for (const std::size_t cue : cues) {
        if (std::find(shown_.begin(), shown_.end(), cue) != shown_.end()) continue;
        std::fprintf(out_, "%s  %s\n", Timestamp(cues_[cue].start).c_str(), PlainText(cues_[cue]).c_str());
        ++count_;
    }
    std::fflush(out_);
    shown_ = cues;
}

bool Player::Obey(Key key)
{
    if (key == Key::PAUSE) {
        clock_.PauseOrGoOn();
        std::fprintf(out_, "%s at %s\n", clock_.IsPaused() ? "paused" : "playing",
                     Timestamp(std::int64_t(clock_.Position())).c_str());
        std::fflush(out_);
    } else if (key != Key::END) {
        if (const std::optional<std::size_t> change = Beside(key)) {
            Seek(changes_[*change].time);
            Show();
        }
    }
    return key != Key::END;
}

// The change to the screen before or after the one that is shown or was last.
std::optional<std::size_t> Player::Beside(Key direction) const
{
    if (direction == Key::FORWARD) {
        for (std::size_t i = next_; i < changes_.size(); ++i) {
            if (changes_[i].screen) return i;
        }
    } else {
        for (std::size_t i = next_; i-- > 0;) {
            if (changes_[i].screen && i + 1 < next_) return i;
        }
    }
    return {};
}

// The value that so many per cent of all do not exceed; of none 0.
static double Percentile(std::vector<double> values, double percent)
{
    if (values.empty()) return 0;
    const auto rank = std::size_t(std::ceil(percent / 100 * double(values.size())));
    const auto place = values.begin() + std::ptrdiff_t(std::clamp<std::size_t>(rank, 1, values.size()) - 1);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

void Player::PrintStatistics() const
{
    std::fprintf(out_,
                 "%zu cues shown, %zu missed; on the screen after p50 %.2f ms, p95 %.2f ms, p99 %.2f ms, "
                 "at most %.2f ms\n",
                 count_, missed_, Percentile(lateness_, 50), Percentile(lateness_, 95),
                 Percentile(lateness_, 99), Percentile(lateness_, 100));
    std::fflush(out_);
}

void Play(const SourceOptions &source, const Playback &playback, const Options &options, std::FILE *out)
{
    const Subtitles subtitles = ReadSubtitles(source);
    for (const std::string &notice : subtitles.notices) Report(notice);

    const Options fitting = FitTo(subtitles.cues, options);
    if (!std::getenv("DISPLAY") && !std::getenv("DFBARGS") && !options.headless) {
        Report("there is no X server (DISPLAY is not set); playing without a window");
    }
    Player player(subtitles.cues, playback, fitting, out);
    const char *const system = std::getenv("DFBARGS");
    if (fitting.mode == ColorMode::INDEX && fitting.layer != KOVA_GRAPHIC_LAYER1 && system &&
        std::strstr(system, "system=x11")) {
        Report("DirectFB shows no index mode in a window of this layer; use --layer 1 or another --mode");
    }
    try {
        player.Run();
    } catch (const Interrupted &) {
        player.PrintStatistics();
        throw;
    }
    player.PrintStatistics();
}

} // namespace caption
