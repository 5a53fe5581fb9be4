#pragma once

/// Loads the components for the first object of each kind. By any thread, but not while another one makes an
/// object. Without effect where they can't be had.
void loadAdoceClasses() noexcept;
