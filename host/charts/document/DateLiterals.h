#pragma once

#include "charts/document/JsonValue.h"

/// Dates of a document: ISO texts, milliseconds, objects of their parts, and parts alone.
namespace ostrel::charts {

/// {"year": 2020, "month": "sep", ...}: months and quarters count from 1, or are named; days of the week from
/// Sunday 0 (and 7). What is left out is the beginning; the year is then 2012, that of units without one.
ort::core::OrtDateTime ReadDateObject(JsonValue const& value);

/// The date that a constant means, to be compared with dates of a unit (which may be empty): a date, its ISO
/// text, milliseconds since 1970-01-01, or, below 10,000 or named, the number of a single unit: 3 or "mar"
/// for a month. nullopt for others.
std::optional<ort::core::OrtDateTime> FindDate(TimeUnitSpec const& unit, Literal const& literal);

}  // namespace ostrel::charts
