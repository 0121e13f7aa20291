#pragma once

/// The three steps of the library's sort cycle.
enum class TripleBool { tripleFalse, tripleNeutral, tripleTrue };
