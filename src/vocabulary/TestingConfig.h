#pragma once

namespace tavocal {

// The limits by which calibrations and tests are judged. The fields bear the names of the keys in
// "TestingConfig.xml"; a limit from that file may be any double, also NaN, which fails every test.
struct TestingConfig {
    double rotation_agreement_degrees_acc = 5.0;
    double gyr_threshold_motionless_DPS = 100.0;
    double gyr_threshold_motion_DPS = 15.0;
    double acc_Threshold_G0 = 0.1;
    int max_time_gap_ms = 100;
    int max_frequency_diff_Hz = 10;
    int max_interval_std_ms = 10;
    double mag_Threshold_Noise = 15.0;
    double mag_Threshold_angles = 15.0;
    double mag_Static_Threshold = 70.0;
    double mag_scale_Thershold = 0.15;
    double rotation_agreement_degrees_mag = 15.0;
    double gyr_MaxNoise_DPS = 0.5;
    double acc_MaxNoise_G0 = 0.04;
    double gyr_MaxSpike_DPS = 50.0;
    double acc_MaxSpike_G0 = 0.5;
    int max_spikes_allowed = 3;
    double hand_held_motionless_factor = 3.0;
};

// The one record of the process, which a run fills once at its start and then only reads. It is
// never destroyed, since other threads may read it while `exit` runs.
TestingConfig& testingConfig();

}  // namespace tavocal
