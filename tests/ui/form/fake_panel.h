#pragma once

/// Stands in for the shell's input panel as long as it lives: what the program under test asks the shell
/// for is answered here. The panel is down at first.
class FakePanel {
 public:
  FakePanel();
  ~FakePanel();
  FakePanel(const FakePanel&) = delete;
  FakePanel& operator=(const FakePanel&) = delete;

  void raise(int top, int height);
  void putDown();
  /// Up, but floating: it covers nothing for good.
  void undock();
  /// The shell does not answer any more.
  void fail();
};
