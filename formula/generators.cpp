// Maps list positions to their generators.
#include "formula/generators.h"

#include <array>

#include "formula/generator_rows.h"

namespace formula {
namespace {

using namespace rows;

constexpr std::array<Generator, kCurveCount> kGenerators{
    heart,                   // 0
    wave,                    // 1
    sinWave,                 // 2
    sinWidening,             // 3
    logCurve,                // 4
    hyperbola,               // 5
    parabola,                // 6
    diskSpring,              // 7
    electrocardiogram,       // 8
    goldenIngot,             // 9
    mushroom,                // 10
    tricuspid,               // 11
    involute,                // 12
    archimedes,              // 13
    logarithmicSpiral,       // 14
    hyperbolicSpiral,        // 15
    interlockingSpiral,      // 16
    kidneyLine,              // 17
    doubleArcEpicycloid,     // 18
    kidneyLine2,             // 19
    talbotFish,              // 20
    tetraphyllaRose,         // 21
    trefoilRose,             // 22
    rhodonea,                // 23
    rhodonea2,               // 24
    epicycloid,              // 25
    hypocycloid,             // 26
    hypotrochoid,            // 27
    epitrochoid,             // 28
    sphericalCurve,          // 29
    fermat,                  // 30
    sphericalHelix,          // 31
    spiralInCircle,          // 32
    butterfly,               // 33
    sun,                     // 34
    ninePetalFlower,         // 35
    butterfly2,              // 36
    bottomlessBasket,        // 37
    ufoVortex,               // 38
    conicalHat,              // 39
    leaf,                    // 40
    probability,             // 41
    witchOfAgnesi,           // 42
    tangentCurve,            // 43
    hyperbolicSine,          // 44
    hyperbolicCosine,        // 45
    hyperbolicTangent,       // 46
    vinelaine,               // 47
    lissajous,               // 48
    figureEight,             // 49
    onePeak,                 // 50
    snake,                   // 51
    plum,                    // 52
    hand,                    // 53
    hexaphyllaRectangulata,  // 54
    curvilinearHexaphylla,   // 55
    hexaphyllum,             // 56
    peach,                   // 57
    longevityLock,           // 58
    drum,                    // 59
    peanut,                  // 60
    bow,                     // 61
    handlebar,               // 62
    circularConic,           // 63
    cylindricalSineWave,     // 64
    catenary,                // 65
    bell,                    // 66
    lame,                    // 67
    mussel,                  // 68
    watt,                    // 69
    superformula,            // 70
};

}  // namespace

Generator generatorFor(int row) { return row >= 0 && row < kCurveCount ? kGenerators[row] : nullptr; }

CurveList generateFormulaCurve(int row, const GeneratorInput& input) {
  Generator generator = generatorFor(row);
  return generator ? generator(input) : CurveList{};
}

}  // namespace formula
