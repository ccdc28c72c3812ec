#pragma once
// The screen pointer at the hourglass for the guard's life. restore() puts it back early, as the
// original does before showing a message.

class Hourglass {
public:
    Hourglass();
    ~Hourglass();
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;
    void restore();

private:
    bool m_active = false;
};
