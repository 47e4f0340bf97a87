#pragma once
// What a creature does: its decisions, routines and reactions. Who it is stands in Character.h.
// This is the base of both species, which override what differs. AppDelegate owns one object of
// each for the life of the process. The header follows the topics; each has a source file of its
// name.
//
// There is no timer that makes a creature think. `think` decides and starts a routine whose end is
// `think` again; whoever wants its attention meanwhile calls `stop`, which voids the old routine,
// and starts a chain that ends in `think`. Routines are lists of steps, and every wait goes through
// the body, which drops it when the creature is interrupted.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "body/Steps.h"
#include "brain/Brain.h"
#include "creature/Attention.h"
#include "creature/Character.h"
#include "creature/FileMemory.h"
#include "creature/Habitat.h"
#include "creature/Reactions.h"

namespace quibbits {

/// Where files are seen on the stage, by their paths.
using FilePoints = std::map<std::string, Point>;

class Companion : public Character {
public:
    ~Companion() override;

    /// Begins a creature's life at launch. An egg, or a creature that is not out, stays still.
    void start();
    Why why() const;
    /// A demo owns the creature.
    bool isInDemo() const { return demoRunning_; }
    /// Puts a creature away at launch, without a show.
    void stayIn();
    /// It is no longer for the camera's sake that it is in.
    void forgetCall() { hiddenForCall_ = false; }
    /// Joins it to the place where it lives; before the start.
    void settle(Habitat habitat) { habitat_ = std::move(habitat); }
    const Habitat& habitat() const { return habitat_; }
    /// For whoever keeps a record; nothing depends on it.
    struct Listener {
        std::function<void(const Companion&, const Mind&)> onDecision;
        std::function<void(const Companion&, const Utterance&)> onUtterance;
    };
    void listen(Listener listener) { listener_ = std::move(listener); }

    // Thinking --------------------------------------------------------------------------------

    /// Decides what to do next and starts it. The heartbeat.
    void think();
    /// Breaks off what the creature is doing, brings it to the ground, and goes on.
    void stop(Done then);

    // Growing ---------------------------------------------------------------------------------

    /// Earns a share of the present level's span of experience.
    void gainEXP(double share);
    /// Adds to friendship while feelings are on.
    void befriend(double amount);

    // Walks and rests -------------------------------------------------------------------------

    struct Walk {
        Point to;
        double speed = 70;  // points a second, before the creature's own pace
        double animSpeed = 1;
    };
    virtual void go(const Walk& walk, Done done);
    /// Sits still; longer while the cursor holds its attention, for 30 seconds at most.
    void sit(Seconds seconds, Done done);

    // Cursor ----------------------------------------------------------------------------------

    /// The pointer moved somewhere: a sitting creature follows it with its eyes.
    void watch(Point point);
    /// The pointer rests on the creature: petting.
    void cursorNearby(Point point);
    /// Another application came to the front: a short look up.
    void glance();

    // Feeding ---------------------------------------------------------------------------------

    bool likes(Item item) const;
    bool dislikes(Item item) const;
    /// An item is being dragged near the creature.
    void itemNear(Point point);
    /// An item was dropped on it: a berry to eat, or something for the species to use.
    void received(Item item);

    // Handling --------------------------------------------------------------------------------

    virtual void pickedUp();
    virtual void dropped();

    // Play ------------------------------------------------------------------------------------

    /// The moves that it can play with, whether they are switched on or not.
    virtual std::vector<std::string> playful() const;
    /// A move that the user wants to see now; nothing while it is in its ball, busy or held.
    void perform(const std::string& name);

    // Ball, hatching and evolution; it is busy from the first step of each to the last ----------

    /// Sends the creature into its ball or lets it out; an egg hatches. `from` is where a thrown
    /// ball starts, on the stage.
    void toggleBall(Point from);
    void toggleBall() { toggleBall(habitat_.ballStart()); }
    /// Back to the egg. Nothing while it is held or busy.
    void restart();
    /// Where a creature that is called comes to stand.
    Point summonSpot() const;
    /// The user's answer to an evolution on offer.
    void answerEvolution(bool yes);
    /// Becomes another form, or puts the offer back while that cannot be shown.
    void evolve(const Evolution& evolution);

    // World events ----------------------------------------------------------------------------

    /// What the creature's own menu holds; none while there is nothing to choose.
    std::optional<Menu> menu();
    void cameraChanged(bool on);
    /// Destroys files with a show, if it may and can; else they go to the Trash at once. Files
    /// that come while others are being destroyed are destroyed after them.
    void strike(const std::vector<std::string>& paths, const FilePoints& points);
    /// Whether it may and can destroy files with a show.
    bool canAttack() const;
    /// Destroys files that the user gave it, if it may and can; else they stay.
    void zap(const std::vector<std::string>& paths);
    /// Moves what it was still to destroy to the Trash at once: the user has had their say.
    void finishDeleting();
    /// Asks in a notification whether files shall go.
    void offerZap(const std::vector<std::string>& paths, const std::string& title,
                  const std::string& why);
    void powerChanged();
    void userLeft();
    void userReturned();
    void heatChanged();
    void internetChanged(bool online);
    void suggestBreak();
    /// A word from outside: "focus", "celebrate", "done" and the like.
    void hook(const std::string& word);

protected:
    Companion(std::string store, const World& world);
    /// Loads the sheets and joins the body to the reactions. Called once, by the constructor of the
    /// final class, when its overrides answer.
    void awaken();

    // Overridden by species where they do more.
    virtual bool absorbsCharge(double minutes);
    virtual void didLevelUp() {}
    virtual void refreshMoves() {}
    virtual void petted() {}
    /// Deals with an item that is no berry; true when it knew what to do with it.
    virtual bool use(Item item);
    /// Gives back what a routine of the species' own has taken from the user.
    virtual void giveBack() {}
    /// Takes its stand for an attack; in the air or on the ground.
    virtual void takeStand(Done then) { comeDown(std::move(then)); }
    /// Destroys one file: calls `launch` when nothing can hold it up any more and `destroy` when it
    /// hits.
    virtual void strikeFile(const std::string& path, std::optional<Point> place, Done next) = 0;
    /// What it does when the last file is gone.
    virtual void boast(Done next) = 0;
    virtual void chargerPlugged();
    virtual void celebrateHook();
    /// Starts a scene of the species' own; false when life goes on as usual.
    virtual bool startDemo(const std::string& word);
    /// Adds what only the species knows to what is weighed.
    virtual void fill(Mind& mind);
    /// Begins a routine of the species' own; false for an intent that it knows nothing of.
    virtual bool beginOwn(Intent intent, const Done& next);

    void nearlyReach(int aim);

    /// Ends what it is doing, where it is.
    void breakOff();
    /// Down to the ground where it is in the air, and on.
    void comeDown(Done then);

    // Steps, for routines.
    Step going(const Walk& walk);
    Step sitting(Seconds seconds);
    Step waiting(Seconds seconds);
    /// Plays an animation a number of times and waits for that.
    Step playing(Anim anim, double times = 1, double speed = 1);
    /// Something that takes no time.
    Step doing(std::function<void()> act);

    /// The attack on a file is under way: it hits whatever befalls the creature.
    void launch(const std::string& path);
    /// Moves a file to the Trash at the height of an attack, for a reward.
    void destroy(const std::string& path);

    // Play ------------------------------------------------------------------------------------

    virtual std::vector<std::string> unlockedMoves() const;
    virtual Animation hoverBob() const;
    enum class Air { free, any };  // whether windows are in the way of a flight
    virtual void levitate(Air air, Done done);
    virtual void startChargeSparks(double rate);
    void bob();
    Step move(const std::string& name);
    void play(Done done);
    void dance(Done done);
    void chargeUp(Done done);
    void surfLaps(const std::vector<Ground>& spots, Done done);
    void arriveByTeleport(Done done);
    void tumble(Done done);
    void victoryLap(Done done);

    // Feeding ---------------------------------------------------------------------------------

    virtual void askForBerry(std::optional<Point> target, Done done);

    // Ball, hatching and evolution ------------------------------------------------------------

    /// Offers an evolution once; `askNow` opens the creature's menu instead of telling the user.
    void offerEvolution(const Evolution& evolution, bool askNow);

    // World events ----------------------------------------------------------------------------

    void greetTheDay();
    void quietDown();
    Attention attention_;
    Habitat habitat_;
    Begun chargeSparks_;
    Begun bobbing_;
    LayerRef light_;  // the white shape of an evolving body

    void uttered(const Utterance& utterance) override;

private:
    friend class CompanionProbe;  // lets tests begin a routine that chance would seldom choose

    // State and saving.
    void joinBody();
    void saveHungryMinutes();

    // Thinking.
    struct Surroundings {
        std::vector<Ground> spots;
        std::optional<Ground> newFile;
        std::optional<Ground> file;
        std::optional<Point> cursorSpot;
    };
    Mind makeMind(const Surroundings& seen) const;
    void act(Intent intent, const Surroundings& seen, Done next);
    void begin(Intent intent, const Surroundings& seen, Done next);
    void showIntent(Intent intent, const Surroundings& seen);
    void comeDownAndThink();
    double hoursSincePetted() const;

    // Growing.
    void needsStep(double minutes);
    void growHungry(double minutes);
    void levelUp(const MoveNames& knewBefore);
    void catchShimmerpox();
    void faint();
    void recover();
    void lieDown();

    // Walks and rests.
    void nap(Done done);
    void rest(Done done);
    void sitQuietly(Done done);
    void daydream(Done done);
    void yawn(Done done);
    void hum(Done done);
    void bask(Done done);
    void askForBerryHere(const Surroundings& seen, Done done);
    void inspectNewFile(const Surroundings& seen, Done done);
    void exploreFile(const Surroundings& seen, Done done);
    void teleportToCursor(const Surroundings& seen, Done done);
    void surf(const Surroundings& seen, Done done);
    void levitateFreely(Done done) { levitate(Air::free, std::move(done)); }
    void teleport(Point to, Done done);
    void stroll(Point to, Done done);
    void trudge(Done done);
    void patrol(const Surroundings& seen, Done done);
    void visit(const Surroundings& seen, Done done);
    void inspect(const Ground& file, Done done);
    void explore(const Ground& file, Done done);
    void climbOn(const Ground& from, Done done);
    void sniff(const Surroundings& seen, Done done);
    std::optional<Point> strollTarget(const std::vector<Ground>& spots, double within) const;
    void finishSit(Instant start, Done done);
    std::optional<Ground> noticeNewFiles(const std::vector<Ground>& tiles);
    std::optional<Ground> fileToExplore(const std::vector<Ground>& tiles);
    /// Whether a route leads from where the creature stands to the middle of each of the files.
    std::vector<bool> canReach(const std::vector<Ground>& files) const;

    // Ball, hatching and evolution.
    void goIn();
    void comeOut(Point from);
    void comeOutRoutine(Done done);
    void hatch(Point from);
    void rollAnew();
    void introduceItself();
    void becomeFree();
    Step flicker(const Sheets& before, const Sheets& after);
    void transform(const Evolution& evolution, const Sheets& sheets);
    const Move* moveToAnnounce(const MoveNames& knewBefore) const;
    void withdrawOffer();

    // Deleting files.
    void attack(const std::vector<std::string>& paths, const FilePoints& points);
    void strikeNext();
    void trashAtOnce(const std::vector<std::string>& paths);
    /// The attack is cut off: what nothing has been thrown at goes to the Trash without a show.
    void trashTheRest();

    // World events.
    void focus(bool quiet);
    void groundChanged();
    bool hasLostGround() const;
    bool isOutOfSight() const;
    void comeIntoSight();
    bool findFeet();
    void standUp();
    /// A dozing creature whose reaction has ended goes on sleeping.
    void sleepOn();
    void wakeUp(Done then);
    void collapse();
    void comeRound();
    void finishJob();
    void greetBack(bool wasDozing);

    // Cursor.
    bool sitsQuietly() const;
    void look(Gaze gaze);
    void react(Point point);
    void warmTo(bool feels);
    void startle();
    void shyAway(Point point);
    void enjoyPetting(Point point);

    // Feeding.
    void minds(Seconds gift);
    void forgetHunger();
    void eat(Item item, Done done);
    void taste(Item item);
    void lickUp(Item item, const Anim& licking, const Nibble& tongue, Done done);
    void biteOff(Layer& food, int bite, double ahead, const Image& picture);

    // Demos.
    void runDemo(const std::string& word);
    void playScene(std::vector<Step> steps);
    void dockDemo();
    void filesDemo();
    void visitFiles();
    void dropDemo();
    void dropAgain(Point spot);
    void breakDemo();
    void feedDemo();
    void eatDemo();
    void levelUpDemo();
    void playDemo();
    void playOn();

    // Handling.
    void landed(double height);
    void landSoftly();
    void landHard(double height);
    void dizzySpell();
    void forgetOldDrops();

    /// A moment from which time is counted with the hours that the computer slept.
    struct Mark {
        Instant instant = 0;
        Date date;
    };
    Mark mark() const { return {now(), date()}; }
    /// By the clock that shows more: the run loop's stands still while the computer sleeps, the
    /// wall's may be set back.
    Seconds since(const Mark& mark) const {
        return std::max(now() - mark.instant, date() - mark.date);
    }

    /// A file that the user has given it to destroy.
    struct Doomed {
        std::string path;
        std::optional<Point> place;  // as told by whoever gave it
        bool launched = false;       // something flies at it
    };
    std::vector<Doomed> doomed_;
    Begun attack_;  // from the first file to the end of the boast

    bool wasCharging_ = false;
    std::optional<Mood> lastMood_;
    Brain brain_;
    std::optional<Intent> lastIntent_;
    Mark lastThought_;
    Mark lastPetted_;
    std::vector<Instant> drops_;  // landings of the last two minutes
    bool dizzyNext_ = false;
    FileMemory files_;
    Begun meal_;  // the food in its paws and what falls off it
    bool hungerNotified_ = false;
    bool demoRunning_ = false;
    bool hiddenForCall_ = false;  // recalled because a camera came on
    Listener listener_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits
