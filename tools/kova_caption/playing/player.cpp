// SPDX-License-Identifier: MIT
#include "playing/player.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <vector>

#include "base/failure.h"
#include "base/timestamp.h"
#include "drawing/remarks.h"
#include "playing/keys.h"
#include "terminal/report.h"

namespace caption
{

namespace
{

using namespace std::chrono_literals;
using Milliseconds = std::chrono::duration<double, std::milli>;

// The playback position within the source.
class Clock
{
public:
    Clock(const PlayerInput &input, double speed) : input_(input), speed_(speed)
    {
    }

    void Set(double position)
    {
        position_ = position;
        since_ = input_.Now();
    }
    void TogglePause()
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
        const Milliseconds passed = input_.Now() - since_;
        return position_ + (paused_ ? 0 : passed.count() * speed_);
    }
    // When playback reaches that time: never before the position was set, and never while it is paused.
    SteadyTime When(std::int64_t time) const
    {
        const Milliseconds left((double(time) - position_) / speed_);

        if (left.count() <= 0) return since_;
        if (paused_) return SteadyTime::max();
        return since_ + std::chrono::duration_cast<SteadyTime::duration>(left);
    }

private:
    const PlayerInput &input_;
    const double speed_;
    double position_ = 0; // milliseconds
    SteadyTime since_;
    bool paused_ = false;
};

// A time at which the screen changes.
struct Change {
    std::int64_t time;
    const Screen *screen; // null: the screen becomes empty
};

class Player
{
public:
    Player(const std::vector<Cue> &cues, const Playback &playback, Stage &stage, PlayerInput &input,
           std::FILE *out);

    void Run();
    void PrintStatistics() const;

private:
    void Seek(std::int64_t time);
    void Prepare();
    void Draw();
    void DrawCaptions();
    SteadyTime NextOfCaptions() const;
    void Show();
    void List(const std::vector<std::size_t> &cues);
    bool HandleKey(Key key);
    std::optional<std::size_t> AdjacentScreen(Key direction) const;

    const std::vector<Cue> &cues_;
    const std::vector<Screen> screens_;
    std::vector<Change> changes_;
    const Playback playback_;
    std::FILE *const out_;
    Stage &stage_;
    PlayerInput &input_;
    const bool limited_; // the library limits the rate of flips
    const bool ahead_;   // the next change is drawn ahead of time into the back buffer
    Clock clock_;
    Remarks remarks_;
    std::size_t next_ = 0; // of the changes
    Plan plan_;            // of the next change
    SteadyTime flipped_;
    std::vector<std::size_t> shown_; // cues
    std::size_t count_ = 0;          // of the cues shown so far
    std::size_t dropped_ = 0;        // screens that ended before they could be drawn
    std::vector<double> latencies_;  // milliseconds
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

Player::Player(const std::vector<Cue> &cues, const Playback &playback, Stage &stage, PlayerInput &input,
               std::FILE *out)
    : cues_(cues), screens_(Screens(cues)), changes_(Changes(screens_)), playback_(playback), out_(out),
      stage_(stage), input_(input), limited_(stage.options.layer != KOVA_GRAPHIC_LAYER1),
      ahead_(limited_ && stage.options.mode != ColorMode::INDEX && !stage.captions),
      clock_(input, playback.speed)
{
}

void Player::Run()
{
    do {
        Seek(playback_.start);
        while (next_ < changes_.size()) {
            const SteadyTime change = clock_.When(changes_[next_].time);
            const SteadyTime movement = NextOfCaptions();
            const std::optional<Key> key = input_.Wait(std::min(change, movement));
            if (key && !HandleKey(*key)) return;
            if (!key && movement < change) DrawCaptions();
            if (!key && movement >= change) Show();
        }
    } while (playback_.loop);
}

// The screen of that time becomes the next change, due at once.
void Player::Seek(std::int64_t time)
{
    const auto after = std::find_if(changes_.begin(), changes_.end(),
                                    [time](const Change &change) { return change.time > time; });

    next_ = std::size_t(std::max<std::ptrdiff_t>(after - changes_.begin() - 1, 0));
    shown_.clear();
    Prepare();
    clock_.Set(double(time));
}

// Does all work of the next change that can be done ahead of time. Layers 2 and 3 have a back buffer to draw
// into; the window of layer 1 would show each string at once. Index mode loads palette entries while it
// draws, which would change the colours on the screen.
void Player::Prepare()
{
    if (next_ == changes_.size() || stage_.captions) return;
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

// As the decoder has them at this moment: letters appear as they were sent, and rows roll.
void Player::DrawCaptions()
{
    stage_.captions->Draw(*cues_.front().captions, std::int64_t(clock_.Position() * 1000));
}

// When closed captions change, whether a cue begins or not.
SteadyTime Player::NextOfCaptions() const
{
    const std::int64_t next = stage_.captions ? stage_.captions->NextDraw() : KOVA_CAPTIONS_NEVER;

    return next == KOVA_CAPTIONS_NEVER ? SteadyTime::max() : clock_.When((next + 999) / 1000);
}

void Player::Draw()
{
    if (stage_.captions) return DrawCaptions();
    stage_.display.Hold();
    stage_.display.Clear();
    stage_.renderer.Draw(plan_);
}

void Player::Show()
{
    const SteadyTime now = input_.Now();
    const std::size_t due = next_;
    while (next_ + 1 < changes_.size() && clock_.When(changes_[next_ + 1].time) <= now) {
        dropped_ += changes_[next_++].screen != nullptr;
    }
    if (next_ != due) Prepare();

    if (!ahead_) Draw();
    // The library defers the second of two flips within 16 ms, to a time when the next screen is being drawn.
    if (limited_ && !stage_.captions) input_.SleepUntil(flipped_ + 17ms);
    if (!stage_.captions) stage_.display.Release();
    flipped_ = input_.Now();

    const Change &change = changes_[next_++];
    if (change.screen) latencies_.push_back(Milliseconds(flipped_ - clock_.When(change.time)).count());
    List(change.screen ? change.screen->cues : std::vector<std::size_t>());
    Prepare();
}

// Prints the cues that were not on the screen before.
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

bool Player::HandleKey(Key key)
{
    if (key == Key::PAUSE) {
        clock_.TogglePause();
        std::fprintf(out_, "%s at %s\n", clock_.IsPaused() ? "paused" : "playing",
                     Timestamp(std::int64_t(clock_.Position())).c_str());
        std::fflush(out_);
    } else if (key == Key::BACK || key == Key::FORWARD) {
        if (const std::optional<std::size_t> change = AdjacentScreen(key)) {
            Seek(changes_[*change].time);
            Show();
        }
    }
    return key != Key::END;
}

// The change to the screen before or after the current or last one.
std::optional<std::size_t> Player::AdjacentScreen(Key direction) const
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

// The smallest value that at least that percentage of all values does not exceed; 0 without values.
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
                 "%zu cues shown, %zu dropped; presentation latency p50 %.2f ms, p95 %.2f ms, p99 %.2f ms, "
                 "max %.2f ms\n",
                 count_, dropped_, Percentile(latencies_, 50), Percentile(latencies_, 95),
                 Percentile(latencies_, 99), Percentile(latencies_, 100));
    std::fflush(out_);
}

static void RefuseLateStart(const std::vector<Cue> &cues, std::int64_t start)
{
    const std::vector<Screen> screens = Screens(cues);

    if (screens.empty() || screens.back().end <= start) {
        throw Failure("--start " + Timestamp(start) +
                      ": nothing is shown from there on; the last caption ends at " +
                      Timestamp(screens.empty() ? 0 : screens.back().end));
    }
}

void PlayCues(const std::vector<Cue> &cues, const Playback &playback, Stage &stage, PlayerInput &input,
              std::FILE *out)
{
    Player player(cues, playback, stage, input, out);

    try {
        player.Run();
    } catch (const Interrupted &) {
        player.PrintStatistics();
        throw;
    }
    player.PrintStatistics();
}

void Play(const SourceOptions &source, const Playback &playback, const Options &options, std::FILE *out)
{
    const Subtitles subtitles = ReadSubtitles(source);
    const Options resolved = ResolveMode(subtitles.cues, options);

    for (const std::string &notice : subtitles.notices) Report(notice);
    RefuseLateStart(subtitles.cues, playback.start);
    if (!std::getenv("DISPLAY") && !std::getenv("DFBARGS") && !options.headless) {
        Report("no X server (DISPLAY is not set); playing without a window");
    }
    Stage stage(resolved, subtitles.cues);
    const char *const system = std::getenv("DFBARGS");
    if (resolved.mode == ColorMode::INDEX && resolved.layer != KOVA_GRAPHIC_LAYER1 && system &&
        std::strstr(system, "system=x11")) {
        Report("DirectFB shows no index mode in a window of layers 2 and 3; use --layer 1 or another --mode");
    }
    Keys keys(!resolved.headless);
    PlayCues(subtitles.cues, playback, stage, keys, out);
}

} // namespace caption
