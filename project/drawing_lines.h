#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "graphics/drawing.h"

// The objects of a drawing as lines of JSON. What an object does not have is left out:
//
//   {"Art": "Rechteck", "gefüllt": true, "Ecken": [60, 40, 10, 20]}
//   {"Art": "Polylinie", "Stift": 14, "Punkte": [0, 0, 5, 5, 9, 0]}
//   {"Art": "Text", "Ecken": [30, 20, 1, 5], "Schrift": [3, 2, 2, "fett"], "Text": "Halle"}
//   {"Art": "Bild", ..., "Bild": [width, height, "ffffff*12 000000 ..."],
//    "Quelle": [width, height, base64], "Aufbereitung": {...}}
//   {"Art": "Gruppe", "Objekte": [
//     ...
//   ]}

namespace kelvo {

inline constexpr std::pair<Kind, std::string_view> kObjectKinds[] = {
    {Kind::Group, "Gruppe"},    {Kind::Line, "Linie"},    {Kind::Rectangle, "Rechteck"},
    {Kind::Ellipse, "Ellipse"}, {Kind::Vertices, "Form"}, {Kind::Polyline, "Polylinie"},
    {Kind::Picture, "Bild"},    {Kind::Text, "Text"}};
/// The marks behind the numbers of "Schrift".
inline constexpr std::pair<bool TextAttributes::*, std::string_view> kTextMarks[] = {
    {&TextAttributes::bold, "fett"},
    {&TextAttributes::inverse, "invers"},
    {&TextAttributes::underline, "unterstrichen"}};
/// The members of "Aufbereitung" that are numbers.
inline constexpr std::pair<int Preparation::*, std::string_view> kPreparationNumbers[] = {
    {&Preparation::turns, "Drehung"},
    {&Preparation::brightness, "Helligkeit"},
    {&Preparation::contrast, "Kontrast"}};
inline constexpr std::pair<bool Preparation::*, std::string_view> kPreparationMarks[] = {
    {&Preparation::mirrored, "gespiegelt"},
    {&Preparation::grey, "grau"},
    {&Preparation::invert, "umgekehrt"}};
inline constexpr std::array<std::string_view, 3> kDitherings{"Schwelle", "Streuung", "Muster"};

/// Adds the lines of the objects, without commas behind the last one of a level.
void AddObjectLines(std::vector<std::string>& lines, const Drawing& objects,
                    const std::string& indent);

}  // namespace kelvo
