#include "DemoNames.h"

namespace {

QStringList lines(const char *text)
{
    return QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

QStringList DemoNames::list()
{
    return lines(R"(
Glass Clean
Morning Chime
Warm Jazz Box
Funk Scratch
Café Chorus
Country Spank
Soft Tremolo
Surf Drip
Slapback 120
Acoustic Sim
Twelve Strings
Nylon Dream
Rotary Slow
Rotary Fast
Bright Comp
Édith Clean
Clean/Crunch A
Clean/Crunch B
Vibrato Haze
Edge of Dawn
Blues Breakup
Roots Rock
Small Combo
Brown Paper
Juke Joint
Barroom Chords
Crème Crunch
Pub Rock Rhythm
Südstaaten
Treble Bite
Garage Stomp
Блюз 12
Singing Lead
Smooth Drive
Mid Push
Desert Fuzz
Torn Fuzz
Octave Fuzz
Stadium Solo
Delay Lead 380
Feedback Hold
Harmony Thirds
Niño Solo
Violin Sustain
Cocked Wah
Auto Wah Funk
Phaser Rhythm
Jet Flanger
Tight Riff
Scooped Wall
Drop C Chug
Gated Staccato
Doom Sludge
Thrash Rhythm
Liquid Solo
Sweep Lead
Mörk Metall
Orage Noir
Muro de Sonido
Seven String Low
Baritone Crush
Rust and Bones
Hall of Iron
Black Ice Lead
Shimmer Hall
Reverse Tape
Ice Field
Nebel
Étoile Filante
Polar Drone
Freeze Pad
Lo-Fi Cassette
Granular Rain
Volume Swell
Infinite Tail
東京の夜
夜明け
Ping Pong Dots
Ducked Echo
Spring Splash
Bass Round DI
Bass Tube Grit
Slap Comp
Dub Deep
Reggae Thumb
Synth Bass Saw
Bass Fuzz Octave
Fretless Glow
Motor Pick Bass
Bass Chorus
Bass Envelope
Bass Two Amps
Kontrabass
Bass Limiter
Basse Générale
Punk Bass
Worship Pad
Practice Dry
Tuner and Volume
)");
}

QList<DemoNames::Renamed> DemoNames::renamed()
{
    return {
        {0, QStringLiteral("Glass Clean 2")},
        {4, QStringLiteral("Coffee Chorus")},
        {11, QStringLiteral("Nylon Ballad")},
        {20, QStringLiteral("Breakup Neck PU")},
        {28, QStringLiteral("Southern Crunch")},
        {32, QStringLiteral("Song 3 Solo")},
        {40, QStringLiteral("Encore Hold")},
        {50, QStringLiteral("Riff Drop C")},
        {56, QStringLiteral("Dark Metal")},
        {64, QString::fromUtf8("Größte Halle")},
        {80, QStringLiteral("Round DI Live")},
        {93, QStringLiteral("Limiter Studio")},
    };
}

QStringList DemoNames::newSounds()
{
    return lines(R"(
Pearl Clean
Quiet Verse
Wide Chorus
Hollow Body
Nashira Picking
Rain on Tin
Half Dirty
Wooden Crunch
Köln 1974
Old Radio
Second Solo
Copper Fuzz
Velours
Sustain Forever
Tape Lead
Broken Speaker
Low B Rhythm
Wall of Amps
Silent Scream
Ångström
Glacier
Long Corridor
星空
Slow Gear
Flat Wound
Upright Walk
Bass Crunch
Bass Cathedral
)");
}
