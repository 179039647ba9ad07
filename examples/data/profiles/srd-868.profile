<?xml version="1.0" encoding="UTF-8"?>
<profile id="srd-868" showInChannelList="1">
  <label lang="en">Short range devices 863 to 870 MHz</label>
  <label lang="de">Funkanwendungen geringer Reichweite 863 bis 870 MHz</label>
  <description lang="en">Sub-bands for non-specific short range devices, and the alarm sub-bands between them. National rules may differ. Source: ERC Recommendation 70-03, Annexes 1 and 7.</description>
  <description lang="de">Teilbänder für Funkanwendungen geringer Reichweite und die Alarmfunk-Teilbänder dazwischen. Nationale Regeln können abweichen. Quelle: ERC Recommendation 70-03, Annex 1 und 7.</description>
  <begin>863 MHz</begin>
  <end>870 MHz</end>
  <channels>
    <range label="Non-specific" type="provider" selectable="1">
      <begin>863 MHz</begin>
      <end>870 MHz</end>
      <color>#2a9d8f</color>
      <comment>Annex 1; without listening before talking the duty cycle limits the use</comment>
      <range label="863-865" type="channel" selectable="1">
        <begin>863 MHz</begin>
        <end>865 MHz</end>
        <color>#2a9d8f</color>
        <comment>25 mW e.r.p., duty cycle up to 0.1 %</comment>
      </range>
      <range label="865-868" type="channel" selectable="1">
        <begin>865 MHz</begin>
        <end>868 MHz</end>
        <color>#2a9d8f</color>
        <comment>25 mW e.r.p., duty cycle up to 1 %</comment>
      </range>
      <range label="868-868.6" type="channel" selectable="1">
        <begin>868 MHz</begin>
        <end>868.6 MHz</end>
        <color>#2a9d8f</color>
        <comment>25 mW e.r.p., duty cycle up to 1 %</comment>
      </range>
      <range label="868.7-869.2" type="channel" selectable="1">
        <begin>868.7 MHz</begin>
        <end>869.2 MHz</end>
        <color>#2a9d8f</color>
        <comment>25 mW e.r.p., duty cycle up to 0.1 %</comment>
      </range>
      <range label="869.4-869.65" type="channel" selectable="1">
        <begin>869.4 MHz</begin>
        <end>869.65 MHz</end>
        <color>#2a9d8f</color>
        <comment>500 mW e.r.p., duty cycle up to 10 %</comment>
      </range>
      <range label="869.7-870" type="channel" selectable="1">
        <begin>869.7 MHz</begin>
        <end>870 MHz</end>
        <color>#2a9d8f</color>
        <comment>5 mW e.r.p., or 25 mW with a duty cycle up to 1 %</comment>
      </range>
    </range>
    <range label="Alarms" type="provider" selectable="1">
      <begin>868.6 MHz</begin>
      <end>869.7 MHz</end>
      <color>#e76f51</color>
      <comment>Annex 7</comment>
      <range label="868.6-868.7" type="channel" selectable="1">
        <begin>868.6 MHz</begin>
        <end>868.7 MHz</end>
        <color>#e76f51</color>
        <comment>Alarms</comment>
      </range>
      <range label="869.2-869.25" type="channel" selectable="1">
        <begin>869.2 MHz</begin>
        <end>869.25 MHz</end>
        <color>#e76f51</color>
        <comment>Social alarms</comment>
      </range>
      <range label="869.25-869.3" type="channel" selectable="1">
        <begin>869.25 MHz</begin>
        <end>869.3 MHz</end>
        <color>#e76f51</color>
        <comment>Alarms</comment>
      </range>
      <range label="869.3-869.4" type="channel" selectable="1">
        <begin>869.3 MHz</begin>
        <end>869.4 MHz</end>
        <color>#e76f51</color>
        <comment>Alarms</comment>
      </range>
      <range label="869.65-869.7" type="channel" selectable="1">
        <begin>869.65 MHz</begin>
        <end>869.7 MHz</end>
        <color>#e76f51</color>
        <comment>Alarms</comment>
      </range>
    </range>
  </channels>
</profile>
