#pragma once
// Generators of each catalogue row, grouped by family; the dispatcher in
// generators.cpp maps list positions to them. Parameter slots are 0-based here
// (slot 0 is parm1).
#include "formula/generators.h"

namespace formula::rows {

// Graphs y = f(x) and waves (graphs.cpp).
CurveList wave(const GeneratorInput&);              // 1
CurveList sinWave(const GeneratorInput&);           // 2
CurveList sinWidening(const GeneratorInput&);       // 3
CurveList logCurve(const GeneratorInput&);          // 4
CurveList hyperbola(const GeneratorInput&);         // 5
CurveList parabola(const GeneratorInput&);          // 6
CurveList electrocardiogram(const GeneratorInput&); // 8
CurveList probability(const GeneratorInput&);       // 41
CurveList witchOfAgnesi(const GeneratorInput&);     // 42
CurveList tangentCurve(const GeneratorInput&);      // 43
CurveList hyperbolicSine(const GeneratorInput&);    // 44
CurveList hyperbolicCosine(const GeneratorInput&);  // 45
CurveList hyperbolicTangent(const GeneratorInput&); // 46
CurveList onePeak(const GeneratorInput&);           // 50
CurveList snake(const GeneratorInput&);             // 51
CurveList handlebar(const GeneratorInput&);         // 62
CurveList catenary(const GeneratorInput&);          // 65

// Spirals and space curves (spirals.cpp).
CurveList diskSpring(const GeneratorInput&);          // 7
CurveList involute(const GeneratorInput&);            // 12
CurveList archimedes(const GeneratorInput&);          // 13
CurveList logarithmicSpiral(const GeneratorInput&);   // 14
CurveList hyperbolicSpiral(const GeneratorInput&);    // 15
CurveList interlockingSpiral(const GeneratorInput&);  // 16
CurveList sphericalCurve(const GeneratorInput&);      // 29
CurveList fermat(const GeneratorInput&);              // 30
CurveList sphericalHelix(const GeneratorInput&);      // 31
CurveList spiralInCircle(const GeneratorInput&);      // 32
CurveList bottomlessBasket(const GeneratorInput&);    // 37
CurveList ufoVortex(const GeneratorInput&);           // 38
CurveList conicalHat(const GeneratorInput&);          // 39
CurveList circularConic(const GeneratorInput&);       // 63
CurveList cylindricalSineWave(const GeneratorInput&); // 64

// Roses, rolling circles and polar flowers (rolling.cpp).
CurveList tricuspid(const GeneratorInput&);          // 11
CurveList kidneyLine(const GeneratorInput&);         // 17
CurveList doubleArcEpicycloid(const GeneratorInput&);// 18
CurveList kidneyLine2(const GeneratorInput&);        // 19
CurveList talbotFish(const GeneratorInput&);         // 20
CurveList tetraphyllaRose(const GeneratorInput&);    // 21
CurveList trefoilRose(const GeneratorInput&);        // 22
CurveList rhodonea(const GeneratorInput&);           // 23
CurveList rhodonea2(const GeneratorInput&);          // 24
CurveList epicycloid(const GeneratorInput&);         // 25
CurveList hypocycloid(const GeneratorInput&);        // 26
CurveList hypotrochoid(const GeneratorInput&);       // 27
CurveList epitrochoid(const GeneratorInput&);        // 28
CurveList sun(const GeneratorInput&);                // 34
CurveList ninePetalFlower(const GeneratorInput&);    // 35
CurveList plum(const GeneratorInput&);               // 52
CurveList hexaphyllaRectangulata(const GeneratorInput&); // 54
CurveList curvilinearHexaphylla(const GeneratorInput&);  // 55
CurveList hexaphyllum(const GeneratorInput&);        // 56
CurveList lame(const GeneratorInput&);               // 67
CurveList mussel(const GeneratorInput&);             // 68
CurveList watt(const GeneratorInput&);               // 69
CurveList superformula(const GeneratorInput&);       // 70

// Closed figures and other named shapes (shapes.cpp).
CurveList heart(const GeneratorInput&);           // 0
CurveList goldenIngot(const GeneratorInput&);     // 9
CurveList mushroom(const GeneratorInput&);        // 10
CurveList butterfly(const GeneratorInput&);       // 33
CurveList butterfly2(const GeneratorInput&);      // 36
CurveList leaf(const GeneratorInput&);            // 40
CurveList vinelaine(const GeneratorInput&);       // 47
CurveList lissajous(const GeneratorInput&);       // 48
CurveList figureEight(const GeneratorInput&);     // 49
CurveList hand(const GeneratorInput&);            // 53
CurveList peach(const GeneratorInput&);           // 57
CurveList longevityLock(const GeneratorInput&);   // 58
CurveList drum(const GeneratorInput&);            // 59
CurveList peanut(const GeneratorInput&);          // 60
CurveList bow(const GeneratorInput&);             // 61
CurveList bell(const GeneratorInput&);            // 66

}  // namespace formula::rows
