"""Drives the real program as a person would: a screen of its own, the mouse, the keys, and the demo
service behind it. Used by `make run` and by the end-to-end tests."""
