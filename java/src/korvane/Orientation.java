package korvane;

/** How the device is held. */
public enum Orientation {
    /** Upright. */
    PORTRAIT,
    /** Upside down. */
    PORTRAIT_UPSIDE_DOWN,
    /** Across, its top to the left. */
    LANDSCAPE_LEFT,
    /** Across, its top to the right. */
    LANDSCAPE_RIGHT;

    /**
     * Whether the device is held across.
     *
     * @return false for upright and upside down
     */
    public boolean isLandscape() {
        return this == LANDSCAPE_LEFT || this == LANDSCAPE_RIGHT;
    }

    /** As the library counts. */
    int number() {
        return ordinal() + 1;
    }
}
