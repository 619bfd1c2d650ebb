/* SPDX-FileCopyrightText: 2026 The ZSpace authors
 * SPDX-License-Identifier: MIT */

/* Stands for the service's installer, and ends at once. */
int main(void)
{
    return 0;
}
