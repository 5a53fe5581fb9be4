#pragma once

/// Identifiers of the form's controls. Editors are numbered in field order within their kind, from the
/// first number of the kind on.

inline constexpr int kLabelId = 10;
inline constexpr int kFirstTextEditorId = 1200;
inline constexpr int kFirstCheckBoxId = 1400;
inline constexpr int kFirstDateEditorId = 1600;
