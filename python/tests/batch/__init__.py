"""Tests of many parts on a cluster."""
