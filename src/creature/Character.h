#pragma once
// Who a creature is: what is remembered of it, what others may see of it, what it says. Species
// tell here what sets them apart. What a creature does stands in Companion.h.

#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "aware/Power.h"
#include "aware/Senses.h"
#include "body/Pet.h"
#include "body/Sheets.h"
#include "creature/Identity.h"
#include "creature/Life.h"
#include "creature/Needs.h"
#include "creature/Presence.h"
#include "creature/Voice.h"
#include "party/PetStats.h"
#include "platform/Computer.h"
#include "rules/Item.h"
#include "settings/model/Setting.h"

namespace quibbits {

/// An evolution that was offered and waits for an answer.
struct Evolution {
    Stage to = Stage::egg;
    std::optional<std::string> form;
    bool operator==(const Evolution&) const = default;
};

/// How a species that has no jaws eats: it licks the food off its tongue.
struct Nibble {
    std::string anim;
    Point mouth;       // art pixels from the foot point, facing right
    Seconds bite = 0;  // into the animation
};

/// A bubble that a creature has shown, for whoever keeps a record.
struct Utterance {
    Face face = Face::happy;
    std::optional<std::string> caption;
    std::optional<std::string> speaker;
    Seconds seconds = 0;
};

class Character {
public:
    /// What a creature shares with the others. All of it outlives the creature.
    struct World {
        const Computer& computer;
        LayerEngine& layers;
        Power& power;
        Senses& senses;
    };

    virtual ~Character();
    Character(const Character&) = delete;
    Character& operator=(const Character&) = delete;

    /// Writes everything that is remembered but the hungry minutes.
    void save();
    PetStats stats() const;
    const std::string& store() const { return store_; }
    Pet& pet() { return pet_; }
    const Pet& pet() const { return pet_; }
    /// The animations of the present form; loaded when first asked for.
    const Sheets& a() const;
    /// How the creature is shown in lists.
    const Anim& portrait() const { return a().idle; }
    const Identity& identity() const { return identity_; }
    Stage stage() const { return identity_.stage; }
    int level() const { return identity_.level(); }
    const Needs::Values& needs() const { return needs_.values(); }
    const Presence& presence() const { return presence_; }
    bool hasShimmerpox() const;
    bool knows(std::string_view move) const { return known().contains(move); }
    Mood mood() const;
    /// How it comes down when it is in the air.
    Pet::Falling falling() const {
        return floats() ? Pet::Falling::floating : Pet::Falling::freely;
    }
    /// The user wants quiet.
    bool isQuiet() const { return focusQuiet_; }
    /// An evolution that was offered and waits for an answer.
    const std::optional<Evolution>& offer() const { return pendingEvolution_; }

    // What species say of themselves.

    virtual AnimRoles animRoles() const { return {}; }
    virtual std::string sheetName(Stage stage, const std::optional<std::string>& form,
                                  bool shiny) const = 0;
    virtual Stage firstStage() const = 0;
    virtual std::string name() const { return displayName(stage()); }
    virtual Ability ability() const { return {}; }
    virtual bool abilityOnCharge() const { return false; }
    virtual MoveNames known() const { return {}; }
    virtual std::span<const Move> learnset() const { return {}; }
    virtual MoveNames signatureMoves() const { return {}; }
    virtual bool canEvolve() const { return false; }
    virtual bool isCoralian() const { return false; }
    virtual bool floats() const { return false; }
    virtual double pettingFriendship() const { return 2.0; }
    virtual double paceBoost() const { return 1.0; }
    virtual std::optional<Nibble> nibble() const { return std::nullopt; }
    virtual const VoiceTable& voice() const;
    virtual std::string cry() const { return name(); }
    virtual std::optional<Item> evolveItem() const { return std::nullopt; }
    virtual std::string evolutionName(Stage to, const std::optional<std::string>& form) const;

protected:
    Character(std::string store, const World& world);
    /// Sets the stage that was saved aside where it is none of the species' own, and shows the body
    /// of a creature that is out. For when the species' overrides answer.
    void embody();
    void setHidden(bool hidden);
    /// Becomes somebody else; of the sheets given, or of those that its form asks for.
    void become(Identity identity, std::optional<Sheets> sheets = std::nullopt);
    /// It has shown a bubble.
    virtual void uttered(const Utterance&) {}

    // The computer, as routines see it.
    /// For whatever elapses while the program runs; no clock that is set moves it.
    Instant now() const { return world_.computer.runLoop.now(); }
    /// For what is saved or belongs to the calendar.
    Date date() const { return world_.computer.runLoop.date(); }
    int hour() const { return world_.computer.runLoop.localTime(date()).hour; }
    Random& random() const { return world_.computer.random; }
    double between(double a, double b) const { return random().uniform(a, b); }
    bool isOn(Setting setting) const { return quibbits::isOn(world_.computer.defaults, setting); }
    const Computer& computer() const { return world_.computer; }
    const Power& power() const { return world_.power; }
    const Senses& senses() const { return world_.senses; }
    std::string key(std::string_view suffix) const;

    // Voice.

    std::optional<std::string> line(Moment moment) const;
    Image image(Face face) const;
    struct Bubble {
        std::optional<std::string> caption = std::nullopt;
        std::optional<std::string> speaker = std::nullopt;
        Image thought = {};
        Seconds seconds = 2.5;
    };
    /// Shows a face, whatever the settings say.
    void feel(Face face, const Bubble& bubble);
    /// Shows a face while portraits are switched on.
    void feelIfShown(Face face, const Bubble& bubble);
    /// Shows what goes through its head as it sets out for something. Not in place of what it has
    /// shown in the same turn of the loop, nor of words that nobody can have read yet.
    void muse(Face face, const Bubble& bubble);
    /// Whether words of this turn of the loop stand in its bubble; others had better wait.
    bool hasJustSaid() const { return hasJustSaid_; }
    struct Speech {
        Moment moment = Moment::hello;
        Face face = Face::happy;
        Image thought = {};
        Seconds silent = 2.5;  // how long the face shows without a line
        Seconds spoken = 3.0;  // and with one, beside the typing
        /// What stands in the panel without a line. With it the bubble shows whatever the settings
        /// say; without it the face shows alone, while portraits are switched on.
        std::optional<std::string> otherwise = std::nullopt;
    };
    /// Says a line for the moment, or only shows the face, as the settings allow.
    void speak(const Speech& speech);

    struct Notice {
        std::string title;
        std::string body;
        std::string suffix;  // of the identifier, behind the store id
        std::string category = {};
        bool sound = false;
        std::vector<std::string> paths = {};
    };
    void notify(const Notice& notice);

    Pet pet_;
    Identity identity_;
    Needs needs_;
    Presence presence_;
    std::optional<Evolution> pendingEvolution_;
    bool focusQuiet_ = false;  // the user's focus mode is on

private:
    const std::string store_;
    const World world_;
    mutable std::optional<Sheets> sheets_;
    // In this turn of the loop: any bubble, and one with words.
    bool hasJustShown_ = false;
    bool hasJustSaid_ = false;
    Instant readAt_ = -std::numeric_limits<Instant>::infinity();  // when its words have been read
};

}  // namespace quibbits
