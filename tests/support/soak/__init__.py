"""A long stretch of mixed work against a service that keeps failing; see scripts/run_soak.py."""
